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

/// Invalid input becomes U+FFFD.
std::string toUtf8(std::wstring_view text);
std::wstring fromUtf8(std::string_view text);

/// UTF-16, the encoding of ODBC and COM; on Windows also that of std::wstring.
std::u16string toUtf16(std::wstring_view text);
std::wstring fromUtf16(std::u16string_view text);

/// Without leading and trailing blanks (U+0020 only; tabs and line breaks stay).
std::wstring_view trimBlanks(std::wstring_view text);
std::wstring_view trimTrailingBlanks(std::wstring_view text);

inline bool isAscii(wchar_t letter) { return static_cast<std::uint32_t>(letter) < 0x80; }
/// Changes the letters a to z only.
inline wchar_t asciiUpperCase(wchar_t letter) {
  return letter >= L'a' && letter <= L'z' ? static_cast<wchar_t>(letter - L'a' + L'A') : letter;
}

/// Upper case by the rules of Unicode; keeps the length.
std::wstring upperCase(std::wstring_view text);
bool equalIgnoringCase(std::wstring_view first, std::wstring_view second);

/// The pieces between the separators; an empty text has no pieces.
std::vector<std::wstring_view> split(std::wstring_view text, wchar_t separator);

/// Decimal digits, with a sign for negative numbers only.
template <std::integral Integer>
std::wstring decimal(Integer number) {
  std::array<char, 24> digits;
  const char* const end = std::to_chars(digits.begin(), digits.end(), number).ptr;
  return std::wstring(static_cast<const char*>(digits.data()), end);
}

/// "True" or "False", whatever the locale.
inline const wchar_t* truthWord(bool value) { return value ? L"True" : L"False"; }

}  // namespace tlpacscfg
