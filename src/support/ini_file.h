#pragma once

#include <string>
#include <string_view>

namespace tlpacscfg {

/// The value of a key in a section of an INI file, at most 127 characters of it, without quotes
/// around it; empty when the file, the section or the key is missing.
std::wstring readIniValue(const std::wstring& file, const std::wstring& section,
                          const std::wstring& key);

/// The same lookup in the text of an INI file.
std::wstring findIniValue(std::wstring_view text, std::wstring_view section, std::wstring_view key);

}  // namespace tlpacscfg
