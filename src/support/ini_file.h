#pragma once

#include <string>
#include <string_view>

namespace tlpacscfg {

/// At most 127 characters of a value in an INI file, without quotes around it; empty when the file,
/// the section or the key is missing.
std::wstring readIniValue(const std::wstring& file, const std::wstring& section,
                          const std::wstring& key);

/// The whole value, looked up in the text of an INI file.
std::wstring findIniValue(std::wstring_view text, std::wstring_view section, std::wstring_view key);

}  // namespace tlpacscfg
