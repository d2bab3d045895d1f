#include "odbc/sql_tokens.h"

#include <gtest/gtest.h>

namespace tlpacscfg {
namespace {

using Kind = SqlToken::Kind;

std::vector<std::pair<Kind, std::wstring>> cut(std::wstring_view sql) {
  std::vector<std::pair<Kind, std::wstring>> tokens;
  for (const SqlToken& token : sqlTokens(sql)) tokens.emplace_back(token.kind, token.text);
  return tokens;
}

using Tokens = std::vector<std::pair<Kind, std::wstring>>;

TEST(SqlTokensTest, AStatementIsSplitIntoWordsTextsSpaceAndSymbols) {
  EXPECT_EQ(cut(L"select p.a_1,'x'\r\n from t"), (Tokens{{Kind::Word, L"select"},
                                                         {Kind::Space, L" "},
                                                         {Kind::Word, L"p"},
                                                         {Kind::Symbol, L"."},
                                                         {Kind::Word, L"a_1"},
                                                         {Kind::Symbol, L","},
                                                         {Kind::Text, L"'x'"},
                                                         {Kind::Space, L"\r\n "},
                                                         {Kind::Word, L"from"},
                                                         {Kind::Space, L" "},
                                                         {Kind::Word, L"t"}}));
}

TEST(SqlTokensTest, ADoubledQuoteBelongsToItsText) {
  EXPECT_EQ(cut(L"'O''Brien' 'a'''"),
            (Tokens{{Kind::Text, L"'O''Brien'"}, {Kind::Space, L" "}, {Kind::Text, L"'a'''"}}));
  EXPECT_EQ(cut(L"''"), (Tokens{{Kind::Text, L"''"}}));
}

TEST(SqlTokensTest, AnUnfinishedTextExtendsToTheEnd) {
  EXPECT_EQ(cut(L"a 'b c"),
            (Tokens{{Kind::Word, L"a"}, {Kind::Space, L" "}, {Kind::Text, L"'b c"}}));
  EXPECT_EQ(cut(L"'"), (Tokens{{Kind::Text, L"'"}}));
  EXPECT_EQ(cut(L"'a''"), (Tokens{{Kind::Text, L"'a''"}}));
}

TEST(SqlTokensTest, TheTokensJoinToTheOriginalText) {
  for (const wchar_t* sql : {L"", L" ", L"a'b'c''d'", L"-- ;\t*()[]\"", L"Übung=(1)"}) {
    std::wstring joined;
    for (const SqlToken& token : sqlTokens(sql)) joined += token.text;
    EXPECT_EQ(joined, sql);
  }
}

TEST(SqlTokensTest, WordsCompareWithoutRegardToCase) {
  EXPECT_TRUE(sqlTokens(L"Select")[0].isWord(L"SELECT"));
  EXPECT_FALSE(sqlTokens(L"Selects")[0].isWord(L"SELECT"));
  EXPECT_FALSE(sqlTokens(L"'Select'")[0].isWord(L"'SELECT'"));
  EXPECT_TRUE(sqlTokens(L"(")[0].isSymbol(L'('));
  EXPECT_FALSE(sqlTokens(L"a")[0].isSymbol(L'a'));
}

TEST(SqlTokensTest, ATokenOutsideAsciiIsRecognised) {
  EXPECT_TRUE(sqlTokens(L"az_19\x7F")[0].isAscii());
  EXPECT_FALSE(sqlTokens(L"a\x80")[0].isAscii());
  EXPECT_FALSE(sqlTokens(L"'\x3000'")[0].isAscii());
}

TEST(SqlTokensTest, AFinishedTextHasItsClosingQuote) {
  for (const wchar_t* text : {L"''", L"'a'", L"''''", L"'O''Brien'"}) {
    EXPECT_TRUE(sqlTokens(text)[0].isFinished()) << text;
  }
  for (const wchar_t* text : {L"'", L"'a", L"'a''", L"'''"}) {
    EXPECT_FALSE(sqlTokens(text)[0].isFinished()) << text;
  }
}

TEST(SqlTokensTest, TheValueOfATextIsWithoutItsQuotes) {
  EXPECT_EQ(sqlTextValue(L"'O''Brien'"), L"O'Brien");
  EXPECT_EQ(sqlTextValue(L"''"), L"");
  EXPECT_EQ(sqlTextValue(L"''''"), L"'");
  EXPECT_EQ(sqlTextValue(L"'unfinished"), L"unfinished");
  EXPECT_EQ(sqlTextValue(L"'"), L"");
}

}  // namespace
}  // namespace tlpacscfg
