#include "config/summary_texts.h"

#include <map>

#include "harness/errors.h"

namespace tlpacscfg {
namespace {

using Texts = std::map<int, std::wstring>;

/// Checks all 16-bit codes: the listed ones give their texts, all others the given text.
void expectTexts(std::wstring (*textOf)(std::int16_t), const Texts& texts,
                 const std::wstring& otherwise) {
  for (int code = -32768; code <= 32767; ++code) {
    const auto listed = texts.find(code);
    const std::wstring& expected = listed == texts.end() ? otherwise : listed->second;
    ASSERT_EQ(textOf(static_cast<std::int16_t>(code)), expected) << code;
  }
}

TEST(OptionTextsTest, VendorFormatsHaveTheirTextsAndAGapAtSix) {
  expectTexts(GetPACSTypeText,
              {{0, L"<None>"},
               {1, L"Standard - XML"},
               {2, L"GE - XML"},
               {3, L"McKesson - XML"},
               {4, L"COM - Broker"},
               {5, L"COM - Broker Extended"},
               {7, L"Custom - XML"},
               {8, L"TCP/IP Message"},
               {9, L"McKesson (HMI RC) - XML"}},
              L"<Unknown>");
}

TEST(OptionTextsTest, BothTriggersHaveTheSameTexts) {
  const Texts texts = {{0, L"<None>"}, {8, L"INS/OVWR"}, {10, L"EOL"}};
  expectTexts(GetStartTriggerText, texts, L"<Unknown>");
  expectTexts(GetManualEntryTriggerText, texts, L"<Unknown>");
}

TEST(OptionTextsTest, UserMappingsHaveTheirTextsTheLastWithoutABlankBeforeTheArrow) {
  expectTexts(GetUserMappingText,
              {{0, L"<None>"},
               {1, L"PACS User Name --> CV User Name"},
               {2, L"PACS User Name --> CV MIS Number"},
               {3, L"PACS User Name --> CV Dictation ID"},
               {4, L"PACS User ID --> CV User Name"},
               {5, L"PACS User ID --> CV MIS Number"},
               {6, L"PACS User ID--> CV Dictation ID"}},
              L"<Unknown>");
}

TEST(OptionTextsTest, PasswordOptionsHaveTheirTexts) {
  expectTexts(GetRequestPasswordText,
              {{0, L"Login User Without Password"},
               {1, L"Validate Received Password"},
               {2, L"Auto Synch Password"}},
              L"<Unknown>");
  expectTexts(GetResponsePasswordText,
              {{0, L"Return Received Password"},
               {1, L"Do Not Send Password"},
               {2, L"Send Corvane Password"}},
              L"<Unknown>");
}

TEST(OptionTextsTest, PollingHasItsTexts) {
  expectTexts(GetPollingOptionText, {{0, L"No Polling"}, {1, L"Enable Polling"}}, L"<Unknown>");
  expectTexts(GetPollingActionText,
              {{0, L"Always Prompt"},
               {1, L"Send Voice Only Jobs to MT, Abort Blank Jobs, Prompt All Others"},
               {2, L"Send Voice Only Jobs to MT, Prompt All Others"}},
              L"<Unknown>");
}

TEST(OptionTextsTest, ContextUpdatesHaveTheirTexts) {
  expectTexts(GetContextUpdateText,
              {{0, L"No Jobs"},
               {5, L"Reloading PACS Initiated Pending/Paused Jobs"},
               {10, L"All Jobs (Including Manual Entry Jobs)"}},
              L"<Unknown>");
}

TEST(OptionTextsTest, AnUnknownContextChangeShowsItsCode) {
  const Texts texts = {
      {0, L"No Polling"},
      {10, L"Do Not Warn"},
      {20, L"Warn when receiving context change"},
      {30, L"Warn when start recording and PACS on different context"},
      {35, L"Prompt for action when start recording and PACS is on different context"},
      {40, L"Warn when ending report and PACS is on different context"},
      {45, L"Prompt for action when ending report and PACS is on different context"},
  };
  for (int code = -32768; code <= 32767; ++code) {
    const auto listed = texts.find(code);
    const std::wstring expected =
        listed == texts.end() ? L"<Unknown> - " + std::to_wstring(code) : listed->second;
    ASSERT_EQ(GetContextChangeText(static_cast<std::int16_t>(code)), expected);
  }
}

TEST(OptionTextsTest, DictationFieldsShowTheirCodesAndUnusedOnesNothing) {
  expectTexts(GetDictationFieldText,
              {{1, L"1 - Subject ID"},        {6, L"6 - Source Physician ID"},
               {7, L"7 - Patient ID"},        {8, L"8 - Patient ID Alt"},
               {9, L"9 - Visit ID"},          {10, L"10 - Order ID"},
               {11, L"11 - Accession ID"},    {12, L"12 - Department"},
               {13, L"13 - Location"},        {15, L"15 - User Defined 1"},
               {16, L"16 - User Defined 2"},  {17, L"17 - User Defined 3"},
               {18, L"18 - User Defined 4"},  {19, L"19 - User Defined 5"},
               {20, L"20 - User Defined 6"},  {21, L"21 - User Defined 7"},
               {22, L"22 - User Defined 8"},  {23, L"23 - User Defined 9"},
               {24, L"24 - User Defined 10"}, {27, L"27 - Account"}},
              L"");
}

TEST(OptionTextsTest, OtherMultipleAccessionOptionsAreEmpty) {
  expectTexts(GetMultiAccessText,
              {{0, L"None (Multiple Accessions are not supported in this configuration)"},
               {1, L"Accession numbers received concatenated in one dictation field (SubjectID)"},
               {2, L"Accession numbers received in multiple dictation fields"}},
              L"");
}

TEST(OptionTextsTest, OtherCloseDictationActionsAreEmpty) {
  expectTexts(
      GetCloseDictationActionText,
      {{0, L"Always Prompt"}, {2, L"Do Something 2"}, {10, L"Abort Blank Jobs, Prompt All Others"}},
      L"");
}

TEST(FieldListTest, AnUnusedCodeContributesOnlyItsSeparator) {
  EXPECT_EQ(GetFieldListText(L"11, 27,4"), L"11 - Accession ID, 27 - Account, ");
}

TEST(FieldListTest, ListsOfEveryLengthAreSeparatedByCommaAndBlank) {
  EXPECT_EQ(GetFieldListText(L""), L"");
  EXPECT_EQ(GetFieldListText(L"7"), L"7 - Patient ID");
  EXPECT_EQ(GetFieldListText(L"4,7"), L", 7 - Patient ID");
  EXPECT_EQ(GetFieldListText(L" 7 , 27 "), L"7 - Patient ID, 27 - Account");
}

TEST(FieldListTest, AnItemThatIsNoNumberDoesNotConvert) {
  EXPECT_TYPE_MISMATCH(GetFieldListText(L"Accession ID,Order ID"));
  EXPECT_TYPE_MISMATCH(GetFieldListText(L"11,"));
  EXPECT_TYPE_MISMATCH(GetFieldListText(L" "));
}

TEST(FieldListTest, AnItemBeyond16BitsOverflows) { EXPECT_OVERFLOW(GetFieldListText(L"32768")); }

TEST(ResponseTypeLinesTest, EachTypeHasItsOwnLines) {
  EXPECT_EQ(GetResponseTypeLines(0, L"r.xml", L"7"),
            L" Response Type:                 XML File\r\n"
            L" Response File Name:            r.xml\r\n");
  EXPECT_EQ(GetResponseTypeLines(1, L"http://x", L"7,11"),
            L" Response Type:                 URL Sent\r\n"
            L" URL Template:                  http://x\r\n"
            L" Applicable CV Fields:          7,11\r\n");
  EXPECT_EQ(GetResponseTypeLines(2, L"MSH|", L"1"),
            L" Response Type:                 Corvane Gate HL7\r\n"
            L" HL7 Template:                  MSH|\r\n"
            L" Applicable CV Fields:          1\r\n");
}

TEST(ResponseTypeLinesTest, AnyOtherTypeHasNone) {
  for (const int type : {-32768, -1, 3, 5, 32767}) {
    EXPECT_EQ(GetResponseTypeLines(static_cast<std::int16_t>(type), L"a", L"b"), L"") << type;
  }
}

TEST(IsAllDigitsTest, OnlyTextsOfAsciiDigitsCount) {
  EXPECT_TRUE(IsAllDigits(L"0815"));
  EXPECT_TRUE(IsAllDigits(L"0"));
  EXPECT_TRUE(IsAllDigits(L"0123456789012345678901234567890123456789"));
  for (const wchar_t* text : {L"", L"12a", L" 12", L"12 ", L"-1", L"1.5", L"٣", L"１"}) {
    EXPECT_FALSE(IsAllDigits(text));
  }
}

TEST(IsInArrayTest, AnyElementMayEqualTheValue) {
  constexpr std::int16_t kList[] = {4, 5, 8};
  EXPECT_TRUE(IsInArray(4, kList));
  EXPECT_TRUE(IsInArray(8, kList));
  EXPECT_FALSE(IsInArray(6, kList));
  EXPECT_FALSE(IsInArray(0, std::span<const std::int16_t>()));
}

}  // namespace
}  // namespace tlpacscfg
