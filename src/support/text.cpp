#include "support/text.h"

#include <type_traits>

namespace tlpacscfg {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

bool isHighSurrogate(char32_t unit) { return unit >= 0xD800 && unit < 0xDC00; }
bool isLowSurrogate(char32_t unit) { return unit >= 0xDC00 && unit < 0xE000; }

/// The code point at `position`, which moves past it; reads UTF-16 and UTF-32 alike.
template <class View>
char32_t nextCodePoint(View text, std::size_t& position) {
  using Unsigned = std::conditional_t<sizeof(text[0]) == 2, std::uint16_t, std::uint32_t>;
  const char32_t unit = static_cast<Unsigned>(text[position++]);
  if (isHighSurrogate(unit) && position < text.size()) {
    const char32_t low = static_cast<Unsigned>(text[position]);
    if (isLowSurrogate(low)) {
      ++position;
      return 0x10000 + ((unit - 0xD800) << 10) + (low - 0xDC00);
    }
  }
  return unit > 0x10FFFF || isHighSurrogate(unit) || isLowSurrogate(unit) ? kReplacement : unit;
}

template <class Text>
void appendCodePoint(Text& text, char32_t point) {
  using Unit = typename Text::value_type;
  if (sizeof(Unit) == 2 && point >= 0x10000) {
    text += static_cast<Unit>(0xD800 + ((point - 0x10000) >> 10));
    text += static_cast<Unit>(0xDC00 + ((point - 0x10000) & 0x3FF));
  } else {
    text += static_cast<Unit>(point);
  }
}

void appendUtf8(std::string& text, char32_t point) {
  const auto add = [&text](char32_t byte) { text += static_cast<char>(byte); };
  if (point < 0x80) {
    add(point);
  } else if (point < 0x800) {
    add(0xC0 | (point >> 6));
    add(0x80 | (point & 0x3F));
  } else if (point < 0x10000) {
    add(0xE0 | (point >> 12));
    add(0x80 | ((point >> 6) & 0x3F));
    add(0x80 | (point & 0x3F));
  } else {
    add(0xF0 | (point >> 18));
    add(0x80 | ((point >> 12) & 0x3F));
    add(0x80 | ((point >> 6) & 0x3F));
    add(0x80 | (point & 0x3F));
  }
}

char32_t nextUtf8(std::string_view text, std::size_t& position) {
  const auto byte = [&](std::size_t at) { return static_cast<unsigned char>(text[at]); };
  const char32_t lead = byte(position++);
  if (lead < 0x80) return lead;
  const int extra = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : 1;
  if (lead < 0xC2 || lead > 0xF4) return kReplacement;
  char32_t point = lead & (0x3FU >> extra);
  for (int i = 0; i < extra; ++i) {
    if (position >= text.size() || (byte(position) & 0xC0) != 0x80) return kReplacement;
    point = (point << 6) | (byte(position++) & 0x3F);
  }
  constexpr char32_t kSmallest[] = {0, 0x80, 0x800, 0x10000};
  const bool surrogate = point >= 0xD800 && point < 0xE000;
  return point < kSmallest[extra] || point > 0x10FFFF || surrogate ? kReplacement : point;
}

template <class Result, class View, class Next, class Append>
Result converted(View text, Next next, Append append) {
  // Nearly every text is plain ASCII, whose characters are the same in every encoding.
  Result result(text.size(), 0);
  std::size_t i = 0;
  for (; i < text.size() && static_cast<char32_t>(text[i]) < 0x80; ++i) {
    result[i] = static_cast<typename Result::value_type>(text[i]);
  }
  result.resize(i);
  while (i < text.size()) append(result, next(text, i));
  return result;
}

}  // namespace

std::string toUtf8(std::wstring_view text) {
  return converted<std::string>(text, nextCodePoint<std::wstring_view>, appendUtf8);
}

std::wstring fromUtf8(std::string_view text) {
  return converted<std::wstring>(text, nextUtf8, appendCodePoint<std::wstring>);
}

std::u16string toUtf16(std::wstring_view text) {
  if constexpr (sizeof(wchar_t) == 2) return std::u16string(text.begin(), text.end());
  return converted<std::u16string>(text, nextCodePoint<std::wstring_view>,
                                   appendCodePoint<std::u16string>);
}

std::wstring fromUtf16(std::u16string_view text) {
  if constexpr (sizeof(wchar_t) == 2) return std::wstring(text.begin(), text.end());
  return converted<std::wstring>(text, nextCodePoint<std::u16string_view>,
                                 appendCodePoint<std::wstring>);
}

std::wstring_view trimTrailingBlanks(std::wstring_view text) {
  return text.substr(0, text.find_last_not_of(L' ') + 1);
}

std::wstring_view trimBlanks(std::wstring_view text) {
  text = trimTrailingBlanks(text);
  text.remove_prefix(std::min(text.find_first_not_of(L' '), text.size()));
  return text;
}

bool equalIgnoringCase(std::wstring_view first, std::wstring_view second) {
  if (first.size() != second.size()) return false;
  for (std::size_t i = 0; i < first.size(); ++i) {
    if (first[i] == second[i]) continue;
    if (!isAscii(first[i]) || !isAscii(second[i])) return upperCase(first) == upperCase(second);
    if (asciiUpperCase(first[i]) != asciiUpperCase(second[i])) return false;
  }
  return true;
}

std::vector<std::wstring_view> split(std::wstring_view text, wchar_t separator) {
  std::vector<std::wstring_view> pieces;
  while (!text.empty()) {
    const std::size_t end = text.find(separator);
    pieces.push_back(text.substr(0, end));
    if (end == text.npos) break;
    text.remove_prefix(end + 1);
    if (text.empty()) pieces.push_back(text);
  }
  return pieces;
}

}  // namespace tlpacscfg
