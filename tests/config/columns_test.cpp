#include "config/columns.h"

#include <gtest/gtest.h>

#include <set>

#include "harness/errors.h"
#include "harness/records.h"

namespace tlpacscfg::test {
namespace {

/// The expected table: property, column, kind (i 16-bit, l 32-bit, s text), the value that replaces
/// NULL ("-" for none), and the quoting of the value (plain, as it stands, doubled).
struct Expected {
  const wchar_t* property;
  const wchar_t* column;
  char kind;
  const wchar_t* ifNull;
  char quoting;
};

constexpr Expected kTable[] = {
    {L"configID", L"config_id", 'i', L"-", 'p'},
    {L"PACSType", L"pacs_type", 'i', L"-", 'p'},
    {L"Description", L"description", 's', L"-", 'd'},
    {L"RequestFileName", L"request_filename", 's', L"-", 'd'},
    {L"ResponseFileName", L"response_filename", 's', L"-", 'd'},
    {L"BiDirectional", L"bidirectional", 'i', L"-", 'p'},
    {L"ResPausedJobs", L"response_for_paused_jobs", 'i', L"-", 'p'},
    {L"ResAbortedJobs", L"response_for_aborted_jobs", 'i', L"-", 'p'},
    {L"ResNonRequestJobs", L"response_for_nonrequests", 'i', L"-", 'p'},
    {L"CofirmStartTrigger", L"ins_ovr_before_pacs", 'i', L"-", 'p'},
    {L"ManualEntryTrigger", L"flag1", 'i', L"-", 'p'},
    {L"UserMappingOpt", L"user_mapping_option", 'i', L"-", 'p'},
    {L"RequestPasswordOpt", L"pacs_request_password", 'i', L"-", 'p'},
    {L"ResponsePasswordOpt", L"pacs_response_password", 'i', L"-", 'p'},
    {L"LastUpdateUserID", L"last_user_id", 's', L"-", 'a'},
    {L"LastUpdateDate", L"last_change_date", 's', L"-", 'a'},
    {L"CustomXMLFile", L"string1", 's', L"", 'a'},
    {L"ApplicableFields", L"string2", 's', L"", 'a'},
    {L"ResponseType", L"flag2", 'i', L"0", 'p'},
    {L"PollingOption", L"flag3", 'i', L"0", 'p'},
    {L"PollingAction", L"flag4", 'i', L"0", 'p'},
    {L"UpdateXMLData", L"flag5", 'i', L"0", 'p'},
    {L"Port", L"flag6", 'l', L"0", 'p'},
    {L"DeleteFlag", L"flag7", 'i', L"0", 'p'},
    {L"ContextUpdate", L"flag8", 'i', L"0", 'p'},
    {L"ContextChangeOption", L"flag9", 'i', L"0", 'p'},
    {L"PollingDisplayField", L"flag10", 'i', L"1", 'p'},
    {L"MultiAccessContext", L"flag11", 'i', L"0", 'p'},
    {L"MultiAccessFields", L"string3", 's', L"", 'a'},
    {L"ContextXMLFile", L"string4", 's', L"", 'a'},
    {L"RequestDefaultText", L"flag12", 'i', L"0", 'p'},
    {L"ResponseReportText", L"flag13", 'i', L"0", 'p'},
    {L"CheckFileDateTime", L"flag14", 'i', L"0", 'p'},
    {L"PreProcessFile", L"flag15", 'i', L"0", 'p'},
    {L"CloseDictationEnabled", L"flag16", 'i', L"0", 'p'},
    {L"CloseDictationFile", L"string5", 's', L"", 'a'},
    {L"CloseDictationAction", L"flag17", 'i', L"0", 'p'},
    {L"SendAbortOnFailedOpen", L"flag18", 'i', L"0", 'p'},
};

char kindOf(const Field& field) { return "ils"[field.index()]; }

char quotingOf(Quoting quoting) {
  return quoting == Quoting::None ? 'p' : quoting == Quoting::Doubled ? 'd' : 'a';
}

TEST(ColumnsTest, TheTableHasEveryColumnInItsPlaceWithItsKindSubstituteAndQuoting) {
  ASSERT_EQ(columns().size(), std::size(kTable));
  for (std::size_t i = 0; i < std::size(kTable); ++i) {
    const Column& column = columns()[i];
    const Expected& expected = kTable[i];
    EXPECT_STREQ(column.property, expected.property);
    EXPECT_STREQ(column.name, expected.column);
    EXPECT_EQ(kindOf(column.field), expected.kind) << i;
    EXPECT_STREQ(column.ifNull ? column.ifNull : L"-", expected.ifNull) << i;
    EXPECT_EQ(quotingOf(column.quoting), expected.quoting) << i;
  }
}

TEST(ColumnsTest, EveryFieldHasOneColumn) {
  const clsPACSConfiguration distinct = distinctRecord();
  std::set<std::wstring> values;
  for (const Column& column : columns()) values.insert(textOf(valueOf(distinct, column.field)));
  EXPECT_EQ(values.size(), 38U);
}

TEST(ColumnsTest, LoadPositionsAreEachTakenOnce) {
  std::set<std::size_t> positions;
  for (const Column& column : columns()) positions.insert(column.loadPosition);
  EXPECT_EQ(positions.size(), 38U);
  EXPECT_EQ(*positions.rbegin(), 37U);
  for (std::size_t i = 0; i < 38; ++i) EXPECT_EQ(columnsInLoadOrder()[i]->loadPosition, i);
}

TEST(ColumnsTest, TheLoadingStatementHasItsOwnOrder) {
  EXPECT_EQ(loadingStatement(),
            L"Select config_id, pacs_type, description, request_filename, response_filename, "
            L"bidirectional, response_for_paused_jobs, response_for_aborted_jobs, "
            L"response_for_nonrequests, ins_ovr_before_pacs, user_mapping_option, "
            L"pacs_request_password, pacs_response_password, last_user_id, last_change_date, "
            L"flag1, string1, string2, flag2, flag3, flag4, flag5, flag6, flag7, flag8, flag9, "
            L"flag10, flag11, string4, string3, flag12, flag13, flag14, flag15, flag16, string5, "
            L"flag17, flag18\r\n from Interface_PACS_cfg order by config_id");
}

TEST(ColumnsTest, AValueOfAnotherTypeIsRefused) {
  clsPACSConfiguration record;
  EXPECT_TYPE_MISMATCH(setValue(record, &clsPACSConfiguration::Port, std::int16_t{1}));
  EXPECT_TYPE_MISMATCH(setValue(record, &clsPACSConfiguration::PACSType, std::wstring(L"1")));
  EXPECT_TYPE_MISMATCH(setValue(record, &clsPACSConfiguration::Description, std::int32_t{1}));
}

}  // namespace
}  // namespace tlpacscfg::test
