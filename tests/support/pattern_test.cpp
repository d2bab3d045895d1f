#include "support/pattern.h"

#include <gtest/gtest.h>

#include <string>

namespace tlpacscfg::test {
namespace {

TEST(PatternTest, StarsAndQuestionMarksStandForCharacters) {
  const struct {
    const wchar_t* text;
    const wchar_t* pattern;
    bool matches;
  } cases[] = {
      {L"a.xml", L"*.xml", true}, {L".xml", L"*.xml", true},   {L"a.xml.txt", L"*.xml", false},
      {L"a.xml", L"a.xml", true}, {L"a.xml", L"?.xml", true},  {L"ab.xml", L"?.xml", false},
      {L"a.xml", L"*", true},     {L"", L"*", true},           {L"", L"", true},
      {L"", L"?", false},         {L"abc", L"a*c", true},      {L"abcbc", L"a*bc", true},
      {L"abcbd", L"a*bc", false}, {L"abc", L"***", true},      {L"abc", L"abc*", true},
      {L"a", L"", false},         {L"a.XML", L"*.xml", false}, {L"a+b", L"a+b", true},
  };
  for (const auto& [text, pattern, matches] : cases) {
    EXPECT_EQ(matchesPattern(text, pattern), matches) << text << L" " << pattern;
  }
}

TEST(PatternTest, ManyStarsTakeNoLongerThanTheTextIsLong) {
  std::wstring pattern;
  for (int i = 0; i < 100; ++i) pattern += L"*a";
  EXPECT_FALSE(matchesPattern(std::wstring(250, L'a') + L"b", pattern));
}

}  // namespace
}  // namespace tlpacscfg::test
