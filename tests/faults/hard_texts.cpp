#include "faults/hard_texts.h"

#include <string_view>

namespace tlpacscfg::test {
namespace {

std::wstring repeated(std::wstring_view piece, std::size_t times) {
  std::wstring text;
  for (std::size_t i = 0; i < times; ++i) text += piece;
  return text;
}

std::wstring controlCharacters() {
  std::wstring text;
  for (wchar_t letter = 1; letter < L' '; ++letter) text += letter;
  return text;
}

}  // namespace

const std::vector<HardText>& hardTexts() {
  static const std::vector<HardText> texts = {
      {"a quote", L"O'Brien"},
      {"nothing but a quote", L"'"},
      {"a pair of quotes", L"the ''best'' one"},
      {"a quote at the end", L"the radiologists'"},
      {"double quotes", L"say \"Ah\""},
      {"a line break", L"first\r\nsecond"},
      {"a bare line feed", L"first\nsecond"},
      {"a blank line", L"first\r\n\r\nthird"},
      {"what looks like the next statement", L"x\r\n\r\nDELETE FROM Interface_PACS_cfg"},
      {"what looks like a comment", L"a -- b /* c */ d"},
      {"semicolons", L"a;b;"},
      {"what looks like a parameter", L"http://pacs/?id={ID}&a=?"},
      {"what looks like an escape", L"{d '2026-01-05'} {fn now()}"},
      {"braces", L"{AF}{CV1}{"},
      {"brackets and backticks", L"[x] `y`"},
      {"words of the dialect", L"GetDate() TOP 1 a = (select 1)"},
      {"backslashes", L"\\\\server\\share\\n\\"},
      {"wildcards", L"100 % _ *"},
      {"blanks at both ends", L"  between  "},
      {"nothing but blanks", L"   "},
      {"tabs", L"\ta\t"},
      {"control characters", controlCharacters()},
      {"accents", L"Größe façade Ærø Łódź"},
      {"right to left", L"עברית مرحبا \u200Fabc\u200E"},
      {"combining letters", L"e\u0301 A\u030A o\u0308\u0323"},
      {"East Asian letters", L"日本語 한국어 中文"},
      {"letters beyond the basic plane", L"\U0001F600 \U00020000"},
      {"joined letters beyond the basic plane", L"\U0001F468\u200D\U0001F469\u200D\U0001F467"},
      {"invisible letters", L"\uFEFFa\u00A0b\u2028c\u200B"},
      {"a digit's worth of numbers", L"0123456789"},
      {"words that mean nothing", L"NULL"},
      {"ten thousand letters", std::wstring(10'000, L'x')},
      {"ten thousand letters of all kinds", repeated(L"aä\u05D0\u4E2D\U0001F600", 2'000)},
      {"ten thousand blanks", std::wstring(10'000, L' ')},
      {"ten thousand lines", repeated(L"x\r\n", 10'000)},
      {"a hundred thousand letters", std::wstring(100'000, L'y')},
  };
  return texts;
}

}  // namespace tlpacscfg::test
