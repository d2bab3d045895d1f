#include "config/pacs_configuration.h"

#include "config/columns.h"
#include "data/direct_connections.h"
#include "data/mod_main.h"
#include "harness/core_fixture.h"
#include "harness/errors.h"
#include "harness/fake_client.h"
#include "harness/records.h"
#include "log/log_support.h"
#include "odbc/error.h"

namespace tlpacscfg::test {
namespace {

const std::wstring kInsert =
    L"INSERT into Interface_PACS_cfg\r\n"
    L"( config_id, pacs_type, description, request_filename, response_filename, bidirectional, "
    L"response_for_paused_jobs, response_for_aborted_jobs, response_for_nonrequests, "
    L"ins_ovr_before_pacs, flag1, user_mapping_option, pacs_request_password, "
    L"pacs_response_password, last_user_id, last_change_date, string1, string2, flag2, flag3, "
    L"flag4, flag5, flag6, flag7, flag8, flag9, flag10, flag11, string3, string4, flag12, flag13, "
    L"flag14, flag15, flag16, string5, flag17, flag18)\r\n"
    L"VALUES(101, 2, 'D''1', 'R''2', 'S''3', 4, 5, 6, 7, 9, 10, 11, 12, 13, '14', "
    L"'2026-01-05 09:08:07', 'X17', 'A18', 16, 19, 20, 8, 100021, 22, 23, 24, 25, 26, 'M28', "
    L"'C27', 29, 30, 31, 32, 33, 'F34', 35, 36)";

const std::wstring kUpdate =
    L"UPDATE Interface_PACS_cfg\r\n"
    L"SET pacs_type = 2,description = 'D''1',request_filename = 'R''2',response_filename = "
    L"'S''3',bidirectional = 4,response_for_paused_jobs = 5,response_for_aborted_jobs = "
    L"6,response_for_nonrequests = 7,ins_ovr_before_pacs = 9,flag1 = 10, user_mapping_option = "
    L"11,pacs_request_password = 12,pacs_response_password = 13,last_user_id = "
    L"4711,last_change_date = '2026-01-05 09:08:07',string1 = 'X17', string2 = 'A18', flag2 = 16, "
    L"flag3 = 19, flag4 = 20, flag5 = 8, flag6 = 100021, flag7 = 22, flag8 = 23, flag9 = 24, "
    L"flag10 = 25, flag11 = 26, string3 = 'M28', string4 = 'C27', flag12 = 29, flag13 = 30, "
    L"flag14 = 31, flag15 = 32, flag16 = 33, string5 = 'F34', flag17 = 35, flag18 = 36\r\n"
    L"WHERE config_id = 101";

class RecordTest : public SiteTest {
 protected:
  RecordTest() {
    modMain.g_objConfig = std::make_shared<HostSettings>(config);
    logOn();
  }

  std::string executed(const std::wstring& sql) const {
    return debugLine(9, L"[TLPACSCFG] Executing query") +
           debugLine(10, L"[TLPACSCFG] Query:\r\n" + sql);
  }

  std::wstring marks() const {
    return *site.value(L"SELECT count(*) FROM System_offline_db_updates");
  }
};

TEST(EmptyRecordTest, ANewRecordIsEmpty) {
  const clsPACSConfiguration record;
  for (const Column& column : columns()) {
    std::visit(
        [&](auto member) {
          EXPECT_TRUE(record.*member == std::remove_cvref_t<decltype(record.*member)>{})
              << column.property;
        },
        column.field);
  }
  EXPECT_EQ(record.ExistingConfig, 0);
  EXPECT_FALSE(record.Deleted);
  EXPECT_EQ(record.Changed, 0);
}

TEST(EmptyRecordTest, FillFieldsTakesItsArgumentsInLoadOrder) {
  clsPACSConfiguration record;
  record.Changed = -1;
  record.Deleted = true;
  record.FillFields(distinctValues());
  clsPACSConfiguration expected = distinctRecord();
  expected.ExistingConfig = -1;
  expected.Deleted = true;
  expectEqualRecords(record, expected);
}

TEST(EmptyRecordTest, ClearingLeavesExistingConfigAndDeleted) {
  for (const auto clear :
       {&clsPACSConfiguration::ClearAllFields, &clsPACSConfiguration::InitAllFields}) {
    clsPACSConfiguration record = distinctRecord();
    record.ExistingConfig = -1;
    record.Deleted = true;
    record.Changed = -1;
    (record.*clear)();
    clsPACSConfiguration expected;
    expected.ExistingConfig = -1;
    expected.Deleted = true;
    expectEqualRecords(record, expected);
  }
}

TEST(EmptyRecordTest, CopyingLeavesTheTargetsChanged) {
  clsPACSConfiguration source = distinctRecord();
  source.ExistingConfig = -1;
  source.Deleted = true;
  source.Changed = 0;
  clsPACSConfiguration target;
  target.Changed = 7;
  source.CopyValues(target);
  clsPACSConfiguration expected = source;
  expected.Changed = 7;
  expectEqualRecords(target, expected);
}

TEST(EmptyRecordTest, ARecordMayBeCopiedOntoItself) {
  clsPACSConfiguration record = distinctRecord();
  record.Changed = -1;
  record.CopyValues(record);
  clsPACSConfiguration expected = distinctRecord();
  expected.Changed = -1;
  expectEqualRecords(record, expected);
}

TEST_F(RecordTest, TheValuesListOfAClearedRecordHasItsUserAtTheFifteenthPlace) {
  clsPACSConfiguration record;
  record.configID = 12;
  record.LastUpdateUserID = L"7";
  EXPECT_EQ(record.getAllValues(),
            L"12, 0, '', '', '', 0, 0, 0, 0, 0, 0, 0, 0, 0, '7', '2026-01-05 09:08:07', '', '', 0, "
            L"0, 0, 0, 0, 0, 0, 0, 0, 0, '', '', 0, 0, 0, 0, 0, '', 0, 0");
}

TEST_F(RecordTest, OnlyThreeTextsHaveTheirQuotesDoubled) {
  clsPACSConfiguration record;
  for (const auto field :
       {&clsPACSConfiguration::Description, &clsPACSConfiguration::RequestFileName,
        &clsPACSConfiguration::ResponseFileName, &clsPACSConfiguration::LastUpdateUserID,
        &clsPACSConfiguration::CustomXMLFile, &clsPACSConfiguration::ApplicableFields,
        &clsPACSConfiguration::MultiAccessFields, &clsPACSConfiguration::ContextXMLFile,
        &clsPACSConfiguration::CloseDictationFile}) {
    record.*field = L"O'Neil";
  }
  EXPECT_EQ(record.getAllValues(),
            L"0, 0, 'O''Neil', 'O''Neil', 'O''Neil', 0, 0, 0, 0, 0, 0, 0, 0, 0, 'O'Neil', "
            L"'2026-01-05 09:08:07', 'O'Neil', 'O'Neil', 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 'O'Neil', "
            L"'O'Neil', 0, 0, 0, 0, 0, 'O'Neil', 0, 0");
}

TEST_F(RecordTest, NegativeNumbersHaveASignAndNoBlank) {
  clsPACSConfiguration record;
  record.BiDirectional = -1;
  record.Port = -2147483647 - 1;
  EXPECT_EQ(record.getAllValues(),
            L"0, 0, '', '', '', -1, 0, 0, 0, 0, 0, 0, 0, 0, '', '2026-01-05 09:08:07', '', '', 0, "
            L"0, 0, 0, -2147483648, 0, 0, 0, 0, 0, '', '', 0, 0, 0, 0, 0, '', 0, 0");
}

TEST_F(RecordTest, ANewRecordIsInsertedWithTheMarkForOfflineCopies) {
  connectSilently();
  clsPACSConfiguration record = distinctRecord();
  EXPECT_EQ(record.SaveConfiguration(), 0);
  EXPECT_EQ(record.ExistingConfig, -1);
  EXPECT_EQ(log(), executed(kInsert) + executed(kMark));
  EXPECT_EQ(site.value(L"SELECT description FROM Interface_PACS_cfg WHERE config_id = 101"),
            L"D'1");
  EXPECT_EQ(marks(), L"1");
}

TEST_F(RecordTest, TheMarkForOfflineCopiesHasItsFiveValues) {
  connectSilently();
  distinctRecord().SaveConfiguration();
  const ProbeRows rows = site.rows(
      L"SELECT user_id, update_type, flag1, string1, update_date FROM System_offline_db_updates");
  ASSERT_EQ(rows.size(), 1U);
  EXPECT_EQ(rows[0][0], L"-1");
  EXPECT_EQ(rows[0][1], L"3");
  EXPECT_EQ(rows[0][2], L"0");
  EXPECT_EQ(rows[0][3], std::nullopt);
  // The database's own clock: a date and a time.
  EXPECT_EQ(rows[0][4].value_or(L"").size(), 19U);
}

TEST_F(RecordTest, AnExistingRecordIsUpdated) {
  addConfiguration(101);
  addConfiguration(102);
  connectSilently();
  clsPACSConfiguration record = distinctRecord();
  record.ExistingConfig = 1;
  EXPECT_EQ(record.SaveConfiguration(), 0);
  EXPECT_EQ(log(), executed(kUpdate) + executed(kMark));
  const ProbeRows rows =
      site.rows(L"SELECT description, last_user_id FROM Interface_PACS_cfg ORDER BY config_id");
  EXPECT_EQ(rows, (ProbeRows{{L"D'1", L"4711"}, {L"", L"1"}}));
}

TEST_F(RecordTest, SavingANewRecordTwiceInsertsAndThenUpdates) {
  connectSilently();
  clsPACSConfiguration record = distinctRecord();
  record.SaveConfiguration();
  record.SaveConfiguration();
  EXPECT_EQ(log(), executed(kInsert) + executed(kMark) + executed(kUpdate) + executed(kMark));
  EXPECT_EQ(marks(), L"2");
}

TEST_F(RecordTest, WithoutAHostObjectTheUserIsZero) {
  connectSilently();
  modMain.g_objConfig.reset();
  clsPACSConfiguration record;
  record.ExistingConfig = -1;
  record.SaveConfiguration();
  EXPECT_NE(log().find(",last_user_id = 0,"), std::string::npos);
}

TEST_F(RecordTest, AQuoteInAnUnescapedTextBreaksTheStatement) {
  connectSilently();
  clsPACSConfiguration record = distinctRecord();
  record.CustomXMLFile = L"C:\\o'neil.xml";
  EXPECT_THROW(record.SaveConfiguration(), odbc::Error);
  EXPECT_EQ(record.ExistingConfig, -1);
  EXPECT_NE(log().find(", 'C:\\o'neil.xml', 'A18', "), std::string::npos);
  EXPECT_EQ(site.rows(L"SELECT 1 FROM Interface_PACS_cfg").size(), 0U);
  EXPECT_EQ(marks(), L"0");
}

TEST_F(RecordTest, AfterAFailedInsertTheNextSaveUpdates) {
  addConfiguration(101, L"description = 'kept'");
  connectSilently();
  clsPACSConfiguration record = distinctRecord();
  EXPECT_THROW(record.SaveConfiguration(), odbc::Error);
  EXPECT_EQ(site.value(L"SELECT description FROM Interface_PACS_cfg"), L"kept");
  record.SaveConfiguration();
  EXPECT_EQ(site.value(L"SELECT description FROM Interface_PACS_cfg"), L"D'1");
}

TEST_F(RecordTest, WithoutADatabaseASaveDoesNothing) {
  clsPACSConfiguration record = distinctRecord();
  EXPECT_EQ(record.SaveConfiguration(), 0);
  EXPECT_EQ(record.ExistingConfig, -1);
  EXPECT_EQ(log(), "");
}

TEST_F(RecordTest, InStandAloneModeASaveDoesNothing) {
  modMain.g_blnUseOfflineDB = true;
  modMain.g_blnOfflineConnected = true;
  EXPECT_EQ(distinctRecord().SaveConfiguration(), 0);
  EXPECT_EQ(log(), "");
}

TEST_F(RecordTest, TheRemoteClientSavesWhenItIsInUse) {
  connectSilently();
  const auto client = connectFakeClient(L"talora");
  EXPECT_EQ(distinctRecord().SaveConfiguration(), 0);
  EXPECT_EQ(client->calls, (std::vector<std::wstring>{L"SQLExecuteText(talora, " + kInsert + L")",
                                                      L"SQLExecuteText(talora, " + kMark + L")"}));
  EXPECT_EQ(site.rows(L"SELECT 1 FROM Interface_PACS_cfg").size(), 0U);
}

TEST_F(RecordTest, ARemoteSaveThatFailsIsOnlyLogged) {
  const auto client = connectFakeClient();
  client->executes = false;
  EXPECT_EQ(distinctRecord().SaveConfiguration(), 0);
  EXPECT_EQ(client->calls.size(), 4U);
}

}  // namespace
}  // namespace tlpacscfg::test
