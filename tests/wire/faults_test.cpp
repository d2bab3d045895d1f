#include <gmock/gmock.h>

#include <thread>

#include "data/direct_connections.h"
#include "data/mod_main.h"
#include "odbc/handle.h"
#include "odbc/platform.h"
#include "wire/wire_fixture.h"

namespace tlpacscfg::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

const std::wstring kTwoRows =
    L"INSERT INTO System_pc_names VALUES('A', '', 1)\r\n\r\n"
    L"INSERT INTO System_pc_names VALUES('B', '', 2)";
const std::wstring kSelect = L"SELECT pc_name FROM System_pc_names";
const ProbeRows kBoth = {{L"A"}, {L"B"}};

/// The driver sends this batch after the server has rolled back the transaction.
constexpr const wchar_t* kBeginIfNone = L"IF @@TRANCOUNT = 0 BEGIN TRANSACTION";

class WireFaultTest : public WireTest {
 protected:
  WireFaultTest() {
    storeSite();
    connect();
  }

  /// The driver begins a transaction, runs the batch, commits and returns to automatic commits.
  static void save() { modMain.g_conSql->execute(kTwoRows); }

  static odbc::Error failureOf(const std::function<void()>& action) {
    try {
      action();
    } catch (const odbc::Error& error) {
      return error;
    }
    ADD_FAILURE() << "Nothing failed.";
    return {0, L"", L"", 0};
  }

  /// Saving fails and the connection is lost.
  void expectLostSave() {
    failureOf(save);
    EXPECT_EQ(faultsLeft(), 0);
    failureOf([] { modMain.g_conSql->query(L"SELECT 1"); });
  }

  ProbeRows stored() const { return siteRows(kSelect); }
};

TEST_F(WireFaultTest, WithoutAFaultBothRowsAreStored) {
  hangUpBefore(At::batch(L"DELETE"));
  save();
  EXPECT_EQ(stored(), kBoth);
  EXPECT_EQ(faultsLeft(), 1);
}

TEST_F(WireFaultTest, AHangUpBeforeTheBatchStoresNothing) {
  hangUpBefore(At::batch(L"INSERT"));
  expectLostSave();
  EXPECT_THAT(stored(), IsEmpty());
}

TEST_F(WireFaultTest, AHangUpAfterTheBatchUndoesIt) {
  hangUpAfter(At::batch(L"INSERT"));
  expectLostSave();
  EXPECT_THAT(stored(), IsEmpty());
  EXPECT_THAT(record(), ::testing::Contains(transaction("undone")));
}

TEST_F(WireFaultTest, AHangUpAfterABatchWithoutATransactionKeepsWhatItStored) {
  hangUpAfter(At::batch(L"INSERT"));
  failureOf([] { modMain.g_conSql->query(kTwoRows); });
  EXPECT_EQ(stored(), kBoth);
}

TEST_F(WireFaultTest, AHangUpInsideABatchExecutesTheAnsweredStatements) {
  hangUpInside(At::batch(L"INSERT"), Statements{1});
  failureOf([] { modMain.g_conSql->query(kTwoRows); });
  EXPECT_EQ(stored(), ProbeRows({{L"A"}}));
}

TEST_F(WireFaultTest, AHangUpInsideABatchUndoesItsTransaction) {
  for (const int answered : {0, 1, 2}) {
    hangUpInside(At::batch(L"INSERT"), Statements{answered});
    expectLostSave();
    EXPECT_THAT(stored(), IsEmpty()) << answered;
    DisconnectDatabase();
    connect();
  }
}

TEST_F(WireFaultTest, AHangUpInsideTheRowsFailsTheQuery) {
  save();
  for (const int sent : {0, 1, 2}) {
    hangUpInside(At::batch(L"SELECT"), Rows{sent});
    failureOf([] { modMain.g_conSql->query(kSelect); });
    EXPECT_EQ(faultsLeft(), 0);
    DisconnectDatabase();
    connect();
  }
}

/// The number of rows fetched one by one until the end or an error.
int rowsBeforeTheEnd(const std::wstring& sql, SQLRETURN& end) {
  const odbc::EnvironmentHandle environment = odbc::EnvironmentHandle::root();
  const auto version = static_cast<std::uintptr_t>(SQL_OV_ODBC3);
  environment.verify(SQLSetEnvAttr(environment.get(), SQL_ATTR_ODBC_VERSION,
                                   reinterpret_cast<SQLPOINTER>(version), 0));
  const odbc::ConnectionHandle connection(environment);
  std::u16string login = u"Driver={SQL Server};Server=127.0.0.1;UID=sa;PWD=geheim;";
  connection.verify(SQLDriverConnectW(connection.get(), nullptr, odbc::odbcText(login), SQL_NTS,
                                      nullptr, 0, nullptr, SQL_DRIVER_NOPROMPT));
  const odbc::StatementHandle statement(connection);
  std::u16string text = odbc::toOdbc(sql);
  statement.verify(SQLExecDirectW(statement.get(), odbc::odbcText(text), SQL_NTS));
  int rows = 0;
  while (SQL_SUCCEEDED(end = SQLFetch(statement.get()))) ++rows;
  return rows;
}

TEST_F(WireFaultTest, AHangUpInsideTheRowsComesAfterTheGivenNumber) {
  save();
  SQLRETURN end = SQL_SUCCESS;
  EXPECT_EQ(rowsBeforeTheEnd(kSelect, end), 2);
  EXPECT_EQ(end, SQL_NO_DATA);
  for (const int sent : {1, 2}) {
    hangUpInside(At::batch(L"SELECT"), Rows{sent});
    EXPECT_EQ(rowsBeforeTheEnd(kSelect, end), sent);
    EXPECT_EQ(end, SQL_ERROR);
  }
}

TEST_F(WireFaultTest, AHangUpBeforeTheCommitStoresNothing) {
  hangUpBefore(At::commit());
  expectLostSave();
  EXPECT_THAT(stored(), IsEmpty());
}

TEST_F(WireFaultTest, AHangUpAfterTheCommitHasStoredEverything) {
  hangUpAfter(At::commit());
  expectLostSave();
  EXPECT_EQ(stored(), kBoth);
}

TEST_F(WireFaultTest, ARefusedCommitKeepsTheTransactionForTheRollback) {
  newRecord();
  failAt(At::commit(), 9002, L"The transaction log is full.");
  EXPECT_EQ(failureOf(save).nativeError(), 9002);
  EXPECT_THAT(stored(), IsEmpty());
  EXPECT_THAT(newRecord(),
              ElementsAre(transaction("begin"), batch(kTwoRows), transaction("rollback")));
  save();
  EXPECT_EQ(stored(), kBoth);
}

TEST_F(WireFaultTest, ARefusedCommitMayUndoTheTransaction) {
  newRecord();
  failAt(At::commit(), 1205, L"Transaction was deadlocked.", AfterFailure::UndoesTransaction);
  EXPECT_EQ(failureOf(save).nativeError(), 1205);
  EXPECT_THAT(newRecord(), ElementsAre(transaction("begin"), batch(kTwoRows), transaction("undone"),
                                       batch(kBeginIfNone)));
  EXPECT_THAT(stored(), IsEmpty());
  save();
  EXPECT_EQ(stored(), kBoth) << "The connection serves on.";
}

TEST_F(WireFaultTest, ARollbackThatIsRefusedRepeatedlyClosesTheConnection) {
  failAt(At::commit(), 9002, L"The transaction log is full.");
  failAt(At::rollback(), 9002, L"The transaction log is full.");
  failAt(At::request(6), 9002, L"The transaction log is full.");
  failureOf(save);
  EXPECT_EQ(faultsLeft(), 0);
  waitForSessions(0);
  EXPECT_TRUE(modMain.g_conSql->isLost());
  runAtSite(L"INSERT INTO System_pc_names VALUES('C', '', 1)");
  EXPECT_EQ(stored(), ProbeRows({{L"C"}}));
}

TEST_F(WireFaultTest, AHangUpAtTheRollbackUndoesTheTransaction) {
  failAt(At::commit(), 9002, L"The transaction log is full.");
  hangUpBefore(At::rollback());
  expectLostSave();
  EXPECT_THAT(stored(), IsEmpty());
}

TEST_F(WireFaultTest, TheConnectionCanBeLostAtEveryRequestOfASave) {
  // Begin, batch, commit and the rollback of the empty transaction that the commit began.
  for (int number = 1; number <= 4; ++number) {
    hangUpBefore(At::request(number));
    if (number < 4) {
      failureOf(save);
      EXPECT_THAT(stored(), IsEmpty()) << number;
    } else {
      save();
      EXPECT_EQ(stored(), kBoth);
    }
    EXPECT_EQ(faultsLeft(), 0) << number;
    DisconnectDatabase();
    connect();
  }
}

TEST_F(WireFaultTest, AFailedBeginFailsTheSave) {
  failAt(At::begin(), 1105, L"No transaction today.");
  EXPECT_EQ(failureOf(save).nativeError(), 1105);
  EXPECT_THAT(stored(), IsEmpty());
}

TEST_F(WireFaultTest, AStalledServerNeverAnswersTheAttention) {
  stallBefore(At::batch(L"INSERT"));
  modMain.g_conSql->limitStatements({.time = std::chrono::seconds(1)});
  const odbc::Error error = failureOf(save);
  EXPECT_EQ(error.sqlState(), L"HYT00");
  EXPECT_THAT(record(), ::testing::Not(::testing::Contains(takenBack())));
  EXPECT_THAT(stored(), IsEmpty());
}

TEST_F(WireFaultTest, AStalledServerMayHaveExecutedTheBatch) {
  stallAfter(At::batch(L"INSERT"));
  modMain.g_conSql->limitStatements({.time = std::chrono::seconds(1)});
  EXPECT_EQ(failureOf([] { modMain.g_conSql->query(kTwoRows); }).sqlState(), L"HYT00");
  EXPECT_EQ(stored(), kBoth);
}

TEST_F(WireFaultTest, AStalledCommitWaitsUntilTheServerIsRestarted) {
  stallAfter(At::commit());
  std::thread restart([this] {
    while (faultsLeft() > 0) std::this_thread::yield();
    restartServer();
  });
  failureOf(save);
  restart.join();
  EXPECT_EQ(stored(), kBoth);
}

TEST_F(WireFaultTest, ACommitWrittenInSqlIsACommit) {
  hangUpAfter(At::commit());
  modMain.g_conSql->query(L"BEGIN TRANSACTION");
  modMain.g_conSql->query(kTwoRows);
  failureOf([] { modMain.g_conSql->query(L"COMMIT TRANSACTION"); });
  EXPECT_EQ(stored(), kBoth);
}

TEST_F(WireFaultTest, ARestartUndoesWhatIsOpenAndTakesNewConnections) {
  modMain.g_conSql->query(L"BEGIN TRANSACTION");
  modMain.g_conSql->query(kTwoRows);
  waitForSessions(1);
  restartServer();
  waitForSessions(0);
  EXPECT_THAT(stored(), IsEmpty());
  failureOf([] { modMain.g_conSql->query(L"SELECT 1"); });
  DisconnectDatabase();
  connect();
  save();
  EXPECT_EQ(stored(), kBoth);
}

TEST_F(WireFaultTest, AStoppedServerRefusesConnectionsUntilItIsStarted) {
  stopServer();
  failureOf(save);
  DisconnectDatabase();
  for (int i = 0; i < 2; ++i) EXPECT_FALSE(ConnectToDatabase(config));
  startServer();
  ASSERT_TRUE(ConnectToDatabase(config));
  save();
  EXPECT_EQ(stored(), kBoth);
}

TEST_F(WireFaultTest, ASecondAdministratorChangesRowsInTheMiddleOfACommand) {
  save();
  changeSiteAt(At::batch(L"SELECT"), L"DELETE FROM System_pc_names WHERE pc_name = 'A'");
  EXPECT_EQ(modMain.g_conSql->query(kSelect).rows(), 1U);
}

TEST_F(WireFaultTest, ASecondAdministratorWaitsForTheEndOfATransaction) {
  changeSiteAt(At::commit(), L"UPDATE System_pc_names SET access_string = 'second'");
  save();
  EXPECT_EQ(siteRows(L"SELECT access_string FROM System_pc_names"),
            ProbeRows({{L"second"}, {L"second"}}));
}

TEST_F(WireFaultTest, ASecondAdministratorContinuesWhenTheTransactionIsLost) {
  changeSiteAt(At::commit(), L"INSERT INTO System_pc_names VALUES('C', '', 1)");
  hangUpBefore(At::commit());
  expectLostSave();
  EXPECT_EQ(stored(), ProbeRows({{L"C"}}));
}

}  // namespace
}  // namespace tlpacscfg::test
