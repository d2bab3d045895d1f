#include "harness/records.h"

#include <gtest/gtest.h>

namespace tlpacscfg::test {

clsPACSConfiguration distinctRecord() {
  clsPACSConfiguration record;
  record.configID = 101;
  record.PACSType = 2;
  record.Description = L"D'1";
  record.RequestFileName = L"R'2";
  record.ResponseFileName = L"S'3";
  record.BiDirectional = 4;
  record.ResPausedJobs = 5;
  record.ResAbortedJobs = 6;
  record.ResNonRequestJobs = 7;
  record.UpdateXMLData = 8;
  record.CofirmStartTrigger = 9;
  record.ManualEntryTrigger = 10;
  record.UserMappingOpt = 11;
  record.RequestPasswordOpt = 12;
  record.ResponsePasswordOpt = 13;
  record.LastUpdateUserID = L"14";
  record.LastUpdateDate = L"2015-01-01 00:00:00";
  record.ResponseType = 16;
  record.CustomXMLFile = L"X17";
  record.ApplicableFields = L"A18";
  record.PollingOption = 19;
  record.PollingAction = 20;
  record.Port = 100021;
  record.DeleteFlag = 22;
  record.ContextUpdate = 23;
  record.ContextChangeOption = 24;
  record.PollingDisplayField = 25;
  record.MultiAccessContext = 26;
  record.ContextXMLFile = L"C27";
  record.MultiAccessFields = L"M28";
  record.RequestDefaultText = 29;
  record.ResponseReportText = 30;
  record.CheckFileDateTime = 31;
  record.PreProcessFile = 32;
  record.CloseDictationEnabled = 33;
  record.CloseDictationFile = L"F34";
  record.CloseDictationAction = 35;
  record.SendAbortOnFailedOpen = 36;
  return record;
}

FieldValues distinctValues() {
  const auto number = [](std::int16_t value) { return FieldValue(value); };
  const auto text = [](const wchar_t* value) { return FieldValue(std::wstring(value)); };
  return {number(101),
          number(2),
          text(L"D'1"),
          text(L"R'2"),
          text(L"S'3"),
          number(4),
          number(5),
          number(6),
          number(7),
          number(9),
          number(11),
          number(12),
          number(13),
          text(L"14"),
          text(L"2015-01-01 00:00:00"),
          number(10),
          text(L"X17"),
          text(L"A18"),
          number(16),
          number(19),
          number(20),
          number(8),
          FieldValue(std::int32_t{100021}),
          number(22),
          number(23),
          number(24),
          number(25),
          number(26),
          text(L"C27"),
          text(L"M28"),
          number(29),
          number(30),
          number(31),
          number(32),
          number(33),
          text(L"F34"),
          number(35),
          number(36)};
}

void expectEqualRecords(const clsPACSConfiguration& found, const clsPACSConfiguration& expected) {
#define EXPECT_SAME(field) EXPECT_EQ(found.field, expected.field)
  EXPECT_SAME(configID);
  EXPECT_SAME(PACSType);
  EXPECT_SAME(Description);
  EXPECT_SAME(RequestFileName);
  EXPECT_SAME(ResponseFileName);
  EXPECT_SAME(BiDirectional);
  EXPECT_SAME(ResPausedJobs);
  EXPECT_SAME(ResAbortedJobs);
  EXPECT_SAME(ResNonRequestJobs);
  EXPECT_SAME(UpdateXMLData);
  EXPECT_SAME(CofirmStartTrigger);
  EXPECT_SAME(ManualEntryTrigger);
  EXPECT_SAME(UserMappingOpt);
  EXPECT_SAME(RequestPasswordOpt);
  EXPECT_SAME(ResponsePasswordOpt);
  EXPECT_SAME(LastUpdateUserID);
  EXPECT_SAME(LastUpdateDate);
  EXPECT_SAME(ResponseType);
  EXPECT_SAME(CustomXMLFile);
  EXPECT_SAME(ApplicableFields);
  EXPECT_SAME(PollingOption);
  EXPECT_SAME(PollingAction);
  EXPECT_SAME(Port);
  EXPECT_SAME(DeleteFlag);
  EXPECT_SAME(ContextUpdate);
  EXPECT_SAME(ContextChangeOption);
  EXPECT_SAME(PollingDisplayField);
  EXPECT_SAME(MultiAccessContext);
  EXPECT_SAME(ContextXMLFile);
  EXPECT_SAME(MultiAccessFields);
  EXPECT_SAME(RequestDefaultText);
  EXPECT_SAME(ResponseReportText);
  EXPECT_SAME(CheckFileDateTime);
  EXPECT_SAME(PreProcessFile);
  EXPECT_SAME(CloseDictationEnabled);
  EXPECT_SAME(CloseDictationFile);
  EXPECT_SAME(CloseDictationAction);
  EXPECT_SAME(SendAbortOnFailedOpen);
  EXPECT_SAME(ExistingConfig);
  EXPECT_SAME(Deleted);
  EXPECT_SAME(Changed);
#undef EXPECT_SAME
}

}  // namespace tlpacscfg::test
