#include "data/workstation_key.h"

#include "data/direct_connections.h"
#include "data/mod_main.h"
#include "harness/core_fixture.h"
#include "harness/errors.h"
#include "harness/fake_client.h"
#include "harness/scratch.h"
#include "log/log_support.h"
#include "odbc/error.h"

namespace tlpacscfg::test {
namespace {

using WorkstationKeyTest = SiteTest;

const std::wstring kInsert1 =
    L"\r\n\r\nINSERT into system_workstation_cfg\r\n"
    L"(pc_name, application_id, key_name, key_value, user_id, flag1)\r\n"
    L"VALUES('PC1', 38, 'PACSConfig', '7', -1, 0)";

const std::wstring kUpdate1 =
    L"\r\n\r\nUPDATE system_workstation_cfg\r\n"
    L"SET key_value = '7'\r\n"
    L"WHERE pc_name = 'PC1' and \r\n"
    L"application_id = 38 and \r\n"
    L"key_name = 'PACSConfig'";

std::wstring question(const std::wstring& name) {
  return L"select key_value \r\n"
         L"from System_Workstation_cfg\r\n"
         L"where pc_name = '" +
         name +
         L"' and \r\n"
         L"application_id = 38 and \r\n"
         L"key_name = 'PACSConfig'";
}

TEST_F(WorkstationKeyTest, ARowIsFoundByNameWhateverItsValue) {
  assign(L"PC1", L"'0'");
  assign(L"PC2", L"NULL");
  connect();
  EXPECT_EQ(WorkstationConfigExists(L"PC1"), 1);
  EXPECT_EQ(WorkstationConfigExists(L"PC2"), 1);
  EXPECT_EQ(WorkstationConfigExists(L"PC3"), 0);
}

TEST_F(WorkstationKeyTest, RowsOfOtherApplicationsAndKeysDoNotCount) {
  site.run(L"INSERT INTO System_workstation_cfg VALUES('PC1', 39, 'PACSConfig', '1', -1, 0)");
  site.run(L"INSERT INTO System_workstation_cfg VALUES('PC1', 38, 'OtherKey', '1', -1, 0)");
  connect();
  EXPECT_EQ(WorkstationConfigExists(L"PC1"), 0);
}

TEST_F(WorkstationKeyTest, TheDirectPathWritesNothingToTheLogAndClosesTheSharedResultSet) {
  connect();
  logOn();
  WorkstationConfigExists(L"PC1");
  EXPECT_EQ(log(), "");
  ASSERT_NE(modMain.g_rsQuery, nullptr);
  EXPECT_RUNTIME_ERROR(modMain.g_rsQuery->EndOfData(), 91,
                       L"Object variable or With block variable not set");
}

TEST_F(WorkstationKeyTest, AQuoteInTheNameFailsOnTheDirectPath) {
  connect();
  EXPECT_THROW(WorkstationConfigExists(L"O'BRIEN-PC"), odbc::Error);
}

TEST_F(WorkstationKeyTest, AQuoteInTheNameFindsNoRowOnTheRemotePath) {
  const auto client = connectFakeClient();
  // The database's error for the quote that ends the name too early.
  client->errors = {L"Incorrect syntax near 'BRIEN'."};
  EXPECT_EQ(WorkstationConfigExists(L"O'BRIEN-PC"), 0);
  EXPECT_EQ(client->calls.front(), L"SQLQueryTable(site, " + question(L"O'BRIEN-PC") + L")");
}

TEST_F(WorkstationKeyTest, WithoutAConnectionTheQueryFails) {
  EXPECT_RUNTIME_ERROR(WorkstationConfigExists(L"PC1"), 91,
                       L"Object variable or With block variable not set");
}

TEST_F(WorkstationKeyTest, TheRemoteQueryHasFiveLines) {
  const auto client = connectFakeClient(L"talora");
  client->table = tableOf({{L"7"}});
  logOn();
  EXPECT_EQ(WorkstationConfigExists(L"O'BRIEN-PC"), 1);
  EXPECT_EQ(client->calls.front(), L"SQLQueryTable(talora, " + question(L"O'BRIEN-PC") + L")");
  EXPECT_EQ(log(), debugLine(7, L"[TLPACSCFG] Getting workstation user option using TlCommClient") +
                       debugLine(9, L"[TLPACSCFG] Querying DB using TlCommClient") +
                       debugLine(10, L"[TLPACSCFG] Query:\r\n" + question(L"O'BRIEN-PC")) +
                       debugLine(9, L"[TLPACSCFG] Getting dataset from TlCommClient") +
                       debugLine(10, L"[TLPACSCFG] DataIndex:1"));
}

TEST_F(WorkstationKeyTest, TheRemoteAnswerIsZeroForEmptyDataAndForEveryFailure) {
  const auto client = connectFakeClient();
  EXPECT_EQ(WorkstationConfigExists(L"PC1"), 0) << "empty";
  client->table = tableOf({{L"7"}});
  client->tableCount = 2;
  EXPECT_EQ(WorkstationConfigExists(L"PC1"), 0) << "two tables";
  client->tableCount = 1;
  client->errors = {L"", L"gone"};
  EXPECT_EQ(WorkstationConfigExists(L"PC1"), 0) << "no dataset";
  client->failing = {L"SQLQueryTable"};
  EXPECT_EQ(WorkstationConfigExists(L"PC1"), 0) << "a failing call";
  client->failing.clear();
  EXPECT_EQ(WorkstationConfigExists(L"PC1"), 1);
  logTo(scratchPath(L"missing/directory.log"));
  EXPECT_EQ(WorkstationConfigExists(L"PC1"), 0) << "an unwritable log";
}

TEST_F(WorkstationKeyTest, AnUnassignedWorkstationQueuesAnInsert) {
  connect();
  SetWorkstationConfig(L"PC1", L"7");
  EXPECT_EQ(modMain.g_strWorkstationBatch, kInsert1);
  EXPECT_EQ(site.value(L"SELECT count(*) FROM System_workstation_cfg"), L"0");
}

TEST_F(WorkstationKeyTest, AnAssignedWorkstationQueuesAnUpdate) {
  assign(L"PC1", L"'3'");
  connect();
  SetWorkstationConfig(L"PC1", L"7");
  EXPECT_EQ(modMain.g_strWorkstationBatch, kUpdate1);
  EXPECT_EQ(site.value(L"SELECT key_value FROM System_workstation_cfg"), L"3");
}

TEST_F(WorkstationKeyTest, TwoCallsLeaveTwoStatementsEachAfterTwoLineBreaks) {
  connect();
  SetWorkstationConfig(L"PC1", L"7");
  assign(L"PC1", L"'3'");
  SetWorkstationConfig(L"PC1", L"7");
  EXPECT_EQ(modMain.g_strWorkstationBatch, kInsert1 + kUpdate1);
}

TEST_F(WorkstationKeyTest, AStatementThatCannotBeBuiltIsLeftOut) {
  modMain.g_strWorkstationBatch = L"before";
  SetWorkstationConfig(L"PC1", L"7");
  EXPECT_EQ(modMain.g_strWorkstationBatch, L"before") << "no connection";
  connect();
  SetWorkstationConfig(L"O'BRIEN-PC", L"7");
  EXPECT_EQ(modMain.g_strWorkstationBatch, L"before") << "a quote in the name";
  EXPECT_TRUE(messages.empty());
}

TEST_F(WorkstationKeyTest, RemotelyANameWithAQuoteQueuesAnUnescapedInsert) {
  connectFakeClient();
  SetWorkstationConfig(L"O'BRIEN-PC", L"7");
  EXPECT_NE(
      modMain.g_strWorkstationBatch.find(L"VALUES('O'BRIEN-PC', 38, 'PACSConfig', '7', -1, 0)"),
      std::wstring::npos);
}

TEST_F(WorkstationKeyTest, TheMarkForOfflineCopiesIsOneRow) {
  connect();
  logOn();
  AddOfflineDbUpdate();
  const std::wstring statement =
      L"INSERT INTO System_offline_db_updates VALUES(-1, 3, GETDATE(), 0, NULL)";
  EXPECT_EQ(log(), debugLine(9, L"[TLPACSCFG] Executing query") +
                       debugLine(10, L"[TLPACSCFG] Query:\r\n" + statement));
  EXPECT_EQ(site.rows(L"SELECT user_id, update_type, flag1, string1 FROM "
                      L"System_offline_db_updates"),
            (ProbeRows{{L"-1", L"3", L"0", std::nullopt}}));
}

TEST_F(WorkstationKeyTest, ErrorsOfTheMarkAreIgnored) {
  connect();
  site.run(L"DROP TABLE System_offline_db_updates");
  EXPECT_NO_THROW(AddOfflineDbUpdate());
  logTo(scratchPath(L"missing/directory.log"));
  EXPECT_NO_THROW(AddOfflineDbUpdate());
  EXPECT_TRUE(messages.empty());
}

TEST_F(WorkstationKeyTest, WithoutADatabaseThereIsNoMark) {
  logOn();
  AddOfflineDbUpdate();
  EXPECT_EQ(log(), "");
}

}  // namespace
}  // namespace tlpacscfg::test
