#pragma once

#include <string_view>

namespace tlpacscfg {

/// Without blanks, tabs and carriage returns at both ends, as lines of settings files are read.
inline std::string_view trimmedLine(std::string_view line) {
  constexpr const char* kDropped = " \t\r";
  const std::size_t first = line.find_first_not_of(kDropped);
  if (first == line.npos) return {};
  return line.substr(first, line.find_last_not_of(kDropped) - first + 1);
}

}  // namespace tlpacscfg
