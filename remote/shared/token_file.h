#pragma once

#include <string>
#include <string_view>

namespace tlpacscfg::remote {

/// The first line of a token file's content without a byte order mark, trailing blanks and a
/// carriage return; may be empty.
inline std::string tokenIn(std::string_view content) {
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  if (content.starts_with(kByteOrderMark)) content.remove_prefix(kByteOrderMark.size());
  content = content.substr(0, content.find('\n'));
  return std::string(content.substr(0, content.find_last_not_of(" \r") + 1));
}

}  // namespace tlpacscfg::remote
