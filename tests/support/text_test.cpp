#include "support/text.h"

#include <gtest/gtest.h>

namespace tlpacscfg {
namespace {

/// U+1F600, written as this platform's wide characters.
const std::wstring kEmoji = fromUtf16(u"\U0001F600");

TEST(TextTest, TextsSurviveConversionToUtf8AndBack) {
  const std::wstring text = L"Zürich – O'Neil €\r\n" + kEmoji;
  EXPECT_EQ(toUtf8(text), "Z\xC3\xBCrich \xE2\x80\x93 O'Neil \xE2\x82\xAC\r\n\xF0\x9F\x98\x80");
  EXPECT_EQ(fromUtf8(toUtf8(text)), text);
}

TEST(TextTest, TextsSurviveConversionToUtf16AndBack) {
  EXPECT_EQ(toUtf16(L"ü" + kEmoji), u"\u00FC\U0001F600");
  EXPECT_EQ(fromUtf16(toUtf16(L"ü" + kEmoji)), L"ü" + kEmoji);
}

TEST(TextTest, MalformedUtf8BecomesTheReplacementCharacter) {
  EXPECT_EQ(fromUtf8("a\xFF"
                     "b"),
            L"a\xFFFD"
            L"b");
  EXPECT_EQ(fromUtf8("\xC3"), L"\xFFFD");
  EXPECT_EQ(fromUtf8("\xE2\x82"), L"\xFFFD");
  // An overlong form, a surrogate, and a number above the last code point.
  EXPECT_EQ(fromUtf8("\xE0\x80\x80").front(), L'\xFFFD');
  EXPECT_EQ(fromUtf8("\xED\xA0\x80"), L"\xFFFD");
  EXPECT_EQ(fromUtf8("\xF4\x90\x80\x80"), L"\xFFFD");
}

TEST(TextTest, ASurrogateAloneBecomesTheReplacementCharacterInUtf8) {
  EXPECT_EQ(toUtf8(std::wstring(1, static_cast<wchar_t>(0xD800))), "\xEF\xBF\xBD");
  EXPECT_EQ(toUtf8(std::wstring(1, static_cast<wchar_t>(0xDC00))), "\xEF\xBF\xBD");
}

TEST(TextTest, OnlyBlanksAreTrimmed) {
  EXPECT_EQ(trimBlanks(L"  a b  "), L"a b");
  EXPECT_EQ(trimBlanks(L"\ta\r\n"), L"\ta\r\n");
  EXPECT_EQ(trimBlanks(L"   "), L"");
  EXPECT_EQ(trimBlanks(L""), L"");
  EXPECT_EQ(trimTrailingBlanks(L"  a  "), L"  a");
}

TEST(TextTest, LettersOfEveryScriptHaveUpperCase) {
  EXPECT_EQ(upperCase(L"pc-übergang-жук"), L"PC-ÜBERGANG-ЖУК");
  EXPECT_TRUE(equalIgnoringCase(L"Übung", L"ÜBUNG"));
  EXPECT_FALSE(equalIgnoringCase(L"Ubung", L"ÜBUNG"));
  EXPECT_FALSE(equalIgnoringCase(L"a", L"ab"));
}

TEST(TextTest, SplittingKeepsEmptyPieces) {
  using Pieces = std::vector<std::wstring_view>;
  EXPECT_EQ(split(L"a,b", L','), (Pieces{L"a", L"b"}));
  EXPECT_EQ(split(L",a,,b,", L','), (Pieces{L"", L"a", L"", L"b", L""}));
  EXPECT_EQ(split(L"a", L','), (Pieces{L"a"}));
  EXPECT_EQ(split(L",", L','), (Pieces{L"", L""}));
}

TEST(TextTest, AnEmptyTextHasNoPieces) { EXPECT_TRUE(split(L"", L',').empty()); }

TEST(TextTest, NumbersAreWrittenPlainly) {
  EXPECT_EQ(decimal(0), L"0");
  EXPECT_EQ(decimal(std::int16_t{-1}), L"-1");
  EXPECT_EQ(decimal(10000), L"10000");
}

TEST(TextTest, TruthWordsAreEnglish) {
  EXPECT_STREQ(truthWord(true), L"True");
  EXPECT_STREQ(truthWord(false), L"False");
}

}  // namespace
}  // namespace tlpacscfg
