#include "harness/records.h"

#include <gtest/gtest.h>

#include <set>

#include "config/columns.h"
#include "support/text.h"

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

std::vector<std::optional<std::wstring>> distinctCells() {
  return {L"101", L"2",   L"D'1",    L"R'2", L"S'3",
          L"4",   L"5",   L"6",      L"7",   L"9",
          L"11",  L"12",  L"13",     L"14",  L"2015-01-01 00:00:00",
          L"10",  L"X17", L"A18",    L"16",  L"19",
          L"20",  L"8",   L"100021", L"22",  L"23",
          L"24",  L"25",  L"26",     L"C27", L"M28",
          L"29",  L"30",  L"31",     L"32",  L"33",
          L"F34", L"35",  L"36"};
}

FieldValues distinctValues() {
  constexpr std::size_t kPort = 22;
  const std::set<std::size_t> texts = {2, 3, 4, 13, 14, 16, 17, 28, 29, 35};
  FieldValues values;
  for (std::size_t i = 0; i < values.size(); ++i) {
    const std::wstring cell = *distinctCells().at(i);
    if (texts.contains(i)) {
      values.at(i) = cell;
    } else if (i == kPort) {
      values.at(i) = std::int32_t{std::stoi(cell)};
    } else {
      values.at(i) = static_cast<std::int16_t>(std::stoi(cell));
    }
  }
  return values;
}

void expectEqualRecords(const clsPACSConfiguration& found, const clsPACSConfiguration& expected) {
  for (const Column& column : columns()) {
    EXPECT_EQ(textOf(valueOf(found, column.field)), textOf(valueOf(expected, column.field)))
        << toUtf8(column.property);
  }
  EXPECT_EQ(found.ExistingConfig, expected.ExistingConfig);
  EXPECT_EQ(found.Deleted, expected.Deleted);
  EXPECT_EQ(found.Changed, expected.Changed);
}

}  // namespace tlpacscfg::test
