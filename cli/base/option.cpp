#include "cli/base/option.h"

#include <charconv>

namespace tlpacscfg::cli {

std::string Number::complaintAbout(const std::string& text) const {
  int number = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  if (error == std::errc() && stop == end && number >= min && number <= max) return {};
  const std::string least = std::to_string(min);
  return "'" + text + "' is not a number " +
         (max == std::numeric_limits<int>::max() ? "of at least " + least
                                                 : "from " + least + " to " + std::to_string(max)) +
         ".";
}

}  // namespace tlpacscfg::cli
