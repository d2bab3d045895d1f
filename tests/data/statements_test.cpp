#include "data/statements.h"

#include "data/data_path.h"
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

class ExecuteSqlTest : public SiteTest {
 protected:
  std::wstring count() const { return *site.value(L"SELECT count(*) FROM System_pc_names"); }
};

const std::wstring kInsertWorkstation =
    L"INSERT INTO System_pc_names VALUES('PC1', 'GETDATE()', 1)";

TEST_F(ExecuteSqlTest, AStatementRunsOnTheOpenConnectionAndIsLogged) {
  connect();
  logOn();
  ExecuteSQL(kInsertWorkstation);
  EXPECT_EQ(site.rows(L"SELECT * FROM System_pc_names"), (ProbeRows{{L"PC1", L"GETDATE()", L"1"}}));
  EXPECT_EQ(log(), debugLine(9, L"[TLPACSCFG] Executing query") +
                       debugLine(10, L"[TLPACSCFG] Query:\r\n" + kInsertWorkstation));
}

TEST_F(ExecuteSqlTest, TheResultOfAStatementIsDiscarded) {
  addWorkstation(L"PC1");
  connect();
  ExecuteSQL(L"select * from System_pc_names");
  EXPECT_EQ(modMain.g_rsQuery, nullptr);
  ExecuteSQL(L"DELETE FROM System_pc_names");
  EXPECT_EQ(count(), L"0");
}

TEST_F(ExecuteSqlTest, AStatementThatTouchesNoRowIsNoError) {
  connect();
  EXPECT_NO_THROW(ExecuteSQL(L"DELETE FROM System_pc_names"));
  EXPECT_NO_THROW(ExecuteSQL(L"UPDATE System_pc_names SET flag2 = 0"));
}

TEST_F(ExecuteSqlTest, OfflineNothingRunsAndNothingIsLogged) {
  connect();
  modMain.g_blnSqlConnected = false;
  modMain.g_blnUseOfflineDB = true;
  modMain.g_blnOfflineConnected = true;
  modMain.g_conOffline = modMain.g_conSql;
  logOn();
  ExecuteSQL(kInsertWorkstation);
  EXPECT_EQ(count(), L"0");
  EXPECT_FALSE(fileExists(scratchPath(L"component.log")));
}

TEST_F(ExecuteSqlTest, TheRemoteClientIsUsedInsteadOfTheOpenConnection) {
  connect();
  const auto client = connectFakeClient(L"talora");
  client->executes = false;
  EXPECT_NO_THROW(ExecuteSQL(kInsertWorkstation));
  EXPECT_EQ(client->calls.front(), L"SQLExecuteText(talora, " + kInsertWorkstation + L")");
  EXPECT_EQ(count(), L"0");
}

TEST_F(ExecuteSqlTest, AnErrorReachesTheCallerWithItsStateAndNativeCode) {
  connect();
  try {
    ExecuteSQL(L"DELETE FROM Missing");
    ADD_FAILURE() << "Nothing was thrown.";
  } catch (const odbc::Error& error) {
    EXPECT_EQ(error.number(), 40002);
    EXPECT_EQ(error.sqlState(), L"HY000");
    EXPECT_EQ(error.nativeError(), 1);
    EXPECT_NE(error.description().find(L"no such table: Missing"), std::wstring::npos);
  }
}

TEST_F(ExecuteSqlTest, AnErrorInALaterStatementLeavesTheDatabaseAsItWas) {
  addWorkstation(L"PC0");
  connect();
  std::wstring batch = L"DELETE FROM System_pc_names\r\n\r\n";
  for (int i = 1; i <= 99; ++i) {
    batch += L"INSERT INTO System_pc_names VALUES('PC" + std::to_wstring(i) + L"', '', 1)\r\n\r\n";
  }
  EXPECT_THROW(ExecuteSQL(batch + L"DELETE FROM Missing"), odbc::Error);
  EXPECT_EQ(site.rows(L"SELECT pc_name FROM System_pc_names"), (ProbeRows{{L"PC0"}}));
  ExecuteSQL(batch);
  EXPECT_EQ(count(), L"99");
}

TEST_F(ExecuteSqlTest, AnErrorInAnEarlierStatementKeepsTheLaterOnesFromRunning) {
  connect();
  EXPECT_THROW(ExecuteSQL(L"DELETE FROM Missing\r\n\r\n" + kInsertWorkstation), odbc::Error);
  EXPECT_EQ(count(), L"0");
}

TEST_F(ExecuteSqlTest, AViolatedConstraintFailsTheStatement) {
  addWorkstation(L"PC1");
  connect();
  EXPECT_THROW(ExecuteSQL(kInsertWorkstation), odbc::Error);
}

TEST_F(ExecuteSqlTest, AnUnwritableLogKeepsTheStatementFromRunning) {
  connect();
  logTo(scratchPath(L"missing/directory.log"));
  EXPECT_RUNTIME_ERROR(ExecuteSQL(kInsertWorkstation), 75, L"Path/File access error");
  EXPECT_EQ(count(), L"0");
}

TEST_F(ExecuteSqlTest, StatementsAreExecutedOnTheServerAndThroughTheClientOnly) {
  EXPECT_FALSE(dataPath().executes());
  modMain.g_blnOfflineConnected = true;
  EXPECT_FALSE(dataPath().executes());
  modMain.g_blnSqlConnected = true;
  EXPECT_TRUE(dataPath().executes());
  modMain.g_blnSqlConnected = false;
  connectFakeClient();
  EXPECT_TRUE(dataPath().executes());
}

TEST(FixQuotesTest, EverySingleQuoteIsDoubled) {
  EXPECT_EQ(FixQuotes(L"O'Brien"), L"O''Brien");
  EXPECT_EQ(FixQuotes(L"''"), L"''''");
  EXPECT_EQ(FixQuotes(L"'a'"), L"''a''");
}

TEST(FixQuotesTest, OtherTextsComeBackUnchanged) {
  EXPECT_EQ(FixQuotes(L""), L"");
  EXPECT_EQ(FixQuotes(L"C:\\a \"b\" `c` \x2019\r\n"), L"C:\\a \"b\" `c` \x2019\r\n");
}

}  // namespace
}  // namespace tlpacscfg::test
