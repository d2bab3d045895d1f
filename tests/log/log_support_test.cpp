#include "log/log_support.h"

#include "harness/core_fixture.h"
#include "harness/errors.h"
#include "harness/scratch.h"
#include "support/runtime_error.h"
#include "support/text.h"

namespace tlpacscfg::test {
namespace {

using LogTest = CoreTest;

TEST_F(LogTest, NothingIsCreatedWithoutALogFile) {
  WriteLog(L"X", 0);
  WriteLog(L"X", 1);
  EXPECT_FALSE(fileExists(scratchPath(L"component.log")));
}

TEST_F(LogTest, AnInformationLineIsAlwaysWritten) {
  logOn(0);
  WriteLog(L"X", 0);
  EXPECT_EQ(log(), "2026-01-05 09:08:07.065 INFO    X\r\n");
}

TEST_F(LogTest, AnErrorIsABlockOfThreeLines) {
  logOn(0);
  WriteLog(L"X", 1);
  EXPECT_EQ(log(), std::string(79, 'v') + "\r\n2026-01-05 09:08:07.065 ERROR   X\r\n" +
                       std::string(79, '^') + "\r\n");
}

TEST_F(LogTest, ASeparatorOfOneCharacterFillsTheLine) {
  logOn(0);
  WriteLog(L"-", 2);
  EXPECT_EQ(log(), std::string(79, '-') + "\r\n");
}

TEST_F(LogTest, ALongSeparatorIsRightAlignedAndFilledWithItsFirstCharacter) {
  logOn(0);
  WriteLog(L"=end", 2);
  EXPECT_EQ(log(), std::string(76, '=') + "end\r\n");
}

TEST_F(LogTest, ASeparatorOfAHundredCharactersIsNotCut) {
  logOn(0);
  const std::wstring message = L"#" + std::wstring(98, L'x') + L" ";
  WriteLog(message, 2);
  EXPECT_EQ(log(), "#" + std::string(98, 'x') + " \r\n");
}

TEST_F(LogTest, AnEmptySeparatorIsAnEmptyLine) {
  logOn(0);
  WriteLog(L"", 2);
  EXPECT_EQ(log(), "\r\n");
}

TEST_F(LogTest, TwoBlanksFollowADepthOfTwoDigitsToo) {
  logOn(10);
  WriteLog(L"X", 19);
  EXPECT_EQ(log(), "2026-01-05 09:08:07.065 DEBUG10  X\r\n");
}

TEST_F(LogTest, EveryDebugLevelIsWrittenAtItsDepthAndAbove) {
  for (std::int16_t level = 10; level <= 19; ++level) {
    for (std::int16_t mode = 0; mode <= 11; ++mode) {
      const std::wstring file =
          scratchPath(std::to_wstring(level) + L"-" + std::to_wstring(mode) + L".log");
      logTo(file, mode);
      WriteLog(L"m", level);
      const int depth = level - 9;
      EXPECT_EQ(readBytes(file), depth <= mode ? debugLine(depth, L"m") : "")
          << "level " << level << ", mode " << mode;
    }
  }
}

TEST_F(LogTest, AnyOtherLevelOnlyTouchesTheFile) {
  logOn(10);
  constexpr std::int16_t kUnused[] = {-32768, -1, 3, 5, 9, 20, 25, 32767};
  for (const std::int16_t level : kUnused) WriteLog(L"X", level);
  EXPECT_TRUE(fileExists(scratchPath(L"component.log")));
  EXPECT_EQ(log(), "");
}

TEST_F(LogTest, EntriesAreAppended) {
  writeBytes(scratchPath(L"component.log"), "before\r\n");
  logOn(9);
  WriteLog(L"one", 18);
  WriteLog(L"two", 0);
  EXPECT_EQ(log(), "before\r\n" + debugLine(9, L"one") + "2026-01-05 09:08:07.065 INFO    two\r\n");
}

TEST_F(LogTest, AMessageMayHaveSeveralLines) {
  logOn(10);
  WriteLog(L"[TLPACSCFG] Query:\r\nselect 1", 19);
  EXPECT_EQ(log(), "2026-01-05 09:08:07.065 DEBUG10  [TLPACSCFG] Query:\r\nselect 1\r\n");
}

TEST_F(LogTest, AnUnwritableFileFailsTheCaller) {
  logTo(scratchPath(L"missing/directory/component.log"));
  EXPECT_RUNTIME_ERROR(WriteLog(L"X", 0), 75, L"Path/File access error");
}

TEST_F(LogTest, ADirectoryIsNoLogFile) {
  makeDirectory(scratchPath(L"directory"));
  logTo(scratchPath(L"directory"));
  EXPECT_RUNTIME_ERROR(WriteLog(L"X", 5), 75, L"Path/File access error");
}

TEST_F(LogTest, ALogFileMayHaveANameInAnyScript) {
  logTo(scratchPath(L"Übergang – журнал.log"));
  WriteLog(L"X", 0);
  EXPECT_EQ(readBytes(scratchPath(L"Übergang – журнал.log")),
            "2026-01-05 09:08:07.065 INFO    X\r\n");
}

TEST_F(LogTest, MidnightIsWrittenInZeros) {
  system::localTime = [] { return system::LocalTime{2026, 1, 5, 0, 0, 0, 0}; };
  EXPECT_EQ(FormatTimestamp(), L"2026-01-05 00:00:00.000");
}

TEST_F(LogTest, EveryPartOfTheTimeHasItsWidth) {
  system::localTime = [] { return system::LocalTime{999, 12, 31, 23, 59, 58, 7}; };
  EXPECT_EQ(FormatTimestamp(), L"0999-12-31 23:59:58.007");
  system::localTime = [] { return system::LocalTime{2026, 10, 11, 12, 13, 14, 156}; };
  EXPECT_EQ(FormatTimestamp(), L"2026-10-11 12:13:14.156");
}

TEST(PadLeftTest, TheColumnsBeforeTheTextAreFilled) {
  EXPECT_EQ(PadLeft(L"7", 3, L"0"), L"007");
  EXPECT_EQ(PadLeft(L"7", 3, L" "), L"  7");
  EXPECT_EQ(PadLeft(L"", 3, L"*"), L"***");
  EXPECT_EQ(PadLeft(L"abc", 3, L"0"), L"abc");
}

TEST(PadLeftTest, TrailingBlanksDoNotCount) {
  EXPECT_EQ(PadLeft(L"7  ", 3, L"0"), L"007");
  EXPECT_EQ(PadLeft(L" 7 ", 3, L"0"), L"0 7");
}

TEST(PadLeftTest, ATextThatIsTooLongComesBackAsGiven) {
  EXPECT_EQ(PadLeft(L"abcd  ", 3, L"0"), L"abcd  ");
}

TEST(PadLeftTest, AFillOfSeveralCharactersStandsForEachBlank) {
  EXPECT_EQ(PadLeft(L"x", 3, L"ab"), L"ababx");
  EXPECT_EQ(PadLeft(L"x", 3, L""), L"x");
}

TEST(PadLeftTest, TheWidestColumnIs255) {
  EXPECT_EQ(PadLeft(L"x", 255, L"-"), std::wstring(254, L'-') + L"x");
}

TEST(TextOperationsTest, EveryOccurrenceIsReplaced) {
  EXPECT_EQ(ReplaceText(L"a b cd", L" ", L"-"), L"a-b-cd");
  EXPECT_EQ(ReplaceText(L"abab", L"ab", L"c"), L"cc");
  EXPECT_EQ(ReplaceText(L"abab", L"b", L""), L"aa");
  EXPECT_EQ(ReplaceText(L"none", L"x", L"y"), L"none");
  EXPECT_EQ(ReplaceText(L"", L"x", L"y"), L"");
}

TEST(TextOperationsTest, ReplacingATextByItselfEnds) {
  EXPECT_EQ(ReplaceText(L"aaa", L"a", L"a"), L"aaa");
}

TEST(TextOperationsTest, AReplacementBeforeTheLastCharacterIsAppended) {
  EXPECT_EQ(ReplaceText(L"a b", L" ", L"-"), L"ab-");
}

TEST(TextOperationsTest, AMatchFormedByAReplacementIsReplacedOnlyIfAnotherMatchFollows) {
  EXPECT_EQ(ReplaceText(L"aabbx", L"ab", L"b"), L"abbx");
  EXPECT_EQ(ReplaceText(L"aabbxab", L"ab", L"b"), L"bbxb");
}

TEST(TextOperationsTest, PositionsBeyond16BitsOverflow) {
  const std::wstring text = std::wstring(40'000, L'-') + L" ";
  EXPECT_RUNTIME_ERROR(ReplaceText(text, L" ", L"x"), 6, L"Overflow");
}

TEST(TextOperationsTest, CharactersAreDeletedFromAPositionOn) {
  EXPECT_EQ(DeleteChars(L"abcdef", 1, 2), L"cdef");
  EXPECT_EQ(DeleteChars(L"abcdef", 3, 2), L"abef");
  EXPECT_EQ(DeleteChars(L"abcdef", 5, 2), L"abcd");
  EXPECT_EQ(DeleteChars(L"abcdef", 5, 1), L"abcdf");
  EXPECT_EQ(DeleteChars(L"abcdef", 5, 20), L"abcd");
  EXPECT_EQ(DeleteChars(L"abcdef", 3, 0), L"abcdef");
}

TEST(TextOperationsTest, NothingIsDeletedBeyondTheEnd) {
  EXPECT_EQ(DeleteChars(L"abc", 4, 1), L"abc");
  EXPECT_EQ(DeleteChars(L"", 1, 1), L"");
}

TEST(TextOperationsTest, ATextIsInsertedBeforeAPosition) {
  EXPECT_EQ(InsertText(L"abc", L"-", 1), L"-abc");
  EXPECT_EQ(InsertText(L"abc", L"-", 2), L"a-bc");
}

TEST(TextOperationsTest, AnInsertionAtTheLastCharacterIsAppended) {
  EXPECT_EQ(InsertText(L"abc", L"-", 3), L"abc-");
  EXPECT_EQ(InsertText(L"abc", L"-", 9), L"abc-");
  EXPECT_EQ(InsertText(L"", L"-", 1), L"-");
}

}  // namespace
}  // namespace tlpacscfg::test
