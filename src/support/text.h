#pragma once

#include <array>
#include <charconv>
#include <concepts>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tlpacscfg {

inline constexpr const wchar_t* kLineBreak = L"\r\n";

/// Malformed input becomes U+FFFD; neither conversion fails.
std::string toUtf8(std::wstring_view text);
std::wstring fromUtf8(std::string_view text);

/// UTF-16 code units, the encoding of ODBC and COM; on Windows the same units as the text itself.
std::u16string toUtf16(std::wstring_view text);
std::wstring fromUtf16(std::u16string_view text);

/// Without leading and trailing blanks (U+0020 only; tabs and line breaks stay).
std::wstring_view trimBlanks(std::wstring_view text);
std::wstring_view trimTrailingBlanks(std::wstring_view text);

inline bool isAscii(wchar_t letter) { return static_cast<std::uint32_t>(letter) < 0x80; }
/// Other characters than the letters a to z stay as they are.
inline wchar_t asciiUpperCase(wchar_t letter) {
  return letter >= L'a' && letter <= L'z' ? static_cast<wchar_t>(letter - L'a' + L'A') : letter;
}

/// Upper case by the rules of Unicode, one code unit for one code unit.
std::wstring upperCase(std::wstring_view text);
bool equalIgnoringCase(std::wstring_view first, std::wstring_view second);

/// The pieces between the separators; an empty text has no pieces.
std::vector<std::wstring_view> split(std::wstring_view text, wchar_t separator);

/// Plain decimal: a sign for negative numbers only, no leading blank.
template <std::integral Integer>
std::wstring decimal(Integer number) {
  std::array<char, 24> digits;
  const char* const end = std::to_chars(digits.begin(), digits.end(), number).ptr;
  return std::wstring(static_cast<const char*>(digits.data()), end);
}

/// "True" or "False" in every locale.
inline const wchar_t* truthWord(bool value) { return value ? L"True" : L"False"; }

}  // namespace tlpacscfg
