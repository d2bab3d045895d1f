#pragma once

#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <string_view>

namespace tlpacscfg::remote {

/// The first line of the file without a byte order mark, trailing blanks and a carriage return;
/// nullopt when there is no line.
inline std::optional<std::string> readTokenFile(const std::filesystem::path& file) {
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  std::ifstream stream(file);
  std::string line;
  if (!std::getline(stream, line)) return std::nullopt;
  if (line.starts_with(kByteOrderMark)) line.erase(0, kByteOrderMark.size());
  line.erase(line.find_last_not_of(" \r") + 1);
  return line;
}

}  // namespace tlpacscfg::remote
