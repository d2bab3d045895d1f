#include <gmock/gmock.h>

#include "data/direct_connections.h"
#include "data/mod_main.h"
#include "data/statements.h"
#include "odbc/error.h"
#include "support/text.h"
#include "wire/wire_fixture.h"
#include "workstation/workstation.h"

namespace tlpacscfg::test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

const WireColumns kColumns = {{"pc_name", "nvarchar(50)"},
                              {"key_value", "nvarchar(max)"},
                              {"access_string", "nvarchar(255)"},
                              {"flag2", "int"}};

const std::wstring kTwoStatements =
    L"DELETE FROM system_workstation_cfg\r\nWHERE pc_name = 'PC-1'\r\n\r\n"
    L"INSERT into system_workstation_cfg\r\nVALUES('PC-1', 38, 'PACSConfig', '7', -1, 0)\r\n\r\n";

class WireFailureTest : public WireTest {
 protected:
  void loadWorkstations() { workstations.GetWorkstationsList(); }

  /// Expects an error with the server's text.
  void expectFailure(const std::wstring& sql, const std::wstring& said) {
    try {
      ExecuteSQL(sql);
      ADD_FAILURE() << "The command did not fail.";
    } catch (const odbc::Error& error) {
      EXPECT_EQ(error.number(), odbc::kOdbcFailed);
      EXPECT_THAT(error.description(), HasSubstr(said));
    }
  }

  colWorkstation workstations;
};

TEST_F(WireFailureTest, AFailedSecondStatementFailsTheBatchAndUndoesTheFirst) {
  fail(L"DELETE", 2, 2627, L"Violation of PRIMARY KEY constraint.");
  connect();
  expectFailure(kTwoStatements, L"Violation of PRIMARY KEY constraint.");
  EXPECT_THAT(newRecord(),
              ElementsAre(transaction("begin"), batch(kTwoStatements), transaction("rollback")));
}

TEST_F(WireFailureTest, ABatchRolledBackByTheServerFailsWithTheErrorOfTheBatch) {
  fail(L"DELETE", 2, 1205, L"Transaction was deadlocked.", AfterFailure::UndoesTransaction);
  connect();
  expectFailure(kTwoStatements, L"Transaction was deadlocked.");
  const std::vector<std::string> told = newRecord();
  EXPECT_THAT(told, ::testing::Contains(transaction("undone")));
  EXPECT_THAT(told, ::testing::Not(::testing::Contains(transaction("commit"))));
}

TEST_F(WireFailureTest, AStatementThatExceedsItsTimeLimitIsCancelled) {
  stall(L"SELECT");
  stall(L"DELETE");
  connect();
  modMain.g_conSql->limitStatements({.time = std::chrono::seconds(1)});
  EXPECT_THROW(modMain.g_conSql->query(L"SELECT 1"), odbc::Error);
  EXPECT_THAT(newRecord(), ElementsAre(batch(L"SELECT 1"), takenBack()));
  EXPECT_THROW(modMain.g_conSql->execute(kTwoStatements), odbc::Error);
  EXPECT_THAT(newRecord(), ElementsAre(transaction("begin"), batch(kTwoStatements), takenBack(),
                                       transaction("rollback")));
}

TEST_F(WireFailureTest, TheConnectionIsUsableAfterAFailedBatch) {
  fail(L"DELETE", 2, 2627, L"Violation of PRIMARY KEY constraint.");
  answerTestStatement();
  connect();
  EXPECT_THROW(ExecuteSQL(kTwoStatements), odbc::Error);
  newRecord();
  EXPECT_TRUE(TestDatabaseConnection());
  const std::wstring update = L"UPDATE Interface_PACS_cfg\r\nSET flag1 = 1";
  ExecuteSQL(update);
  EXPECT_THAT(newRecord(), ElementsAre(batch(L"SELECT GetDate()"), transaction("begin"),
                                       batch(update), transaction("commit")));
}

TEST_F(WireFailureTest, ARefusedStatementFailsTheConnectionTest) {
  connect();
  EXPECT_FALSE(TestDatabaseConnection());
  EXPECT_THAT(messages, IsEmpty());
}

TEST_F(WireFailureTest, AConnectionLostWhileRowsArriveIsReported) {
  answer(L"select p.pc_name", kColumns, {{L"READ-01", L"1", L"", L"1"}}, AfterRows::HangsUp);
  answerTestStatement();
  connect();
  loadWorkstations();
  ASSERT_EQ(messages.size(), 1U);
  EXPECT_THAT(messages[0].text, ::testing::StartsWith(L"Error "));
  EXPECT_THAT(messages[0].text, HasSubstr(L" Error Desc "));
  EXPECT_FALSE(TestDatabaseConnection());
}

TEST_F(WireFailureTest, TextsOfAnyLengthArriveWhole) {
  const std::wstring name = std::wstring(10'000, L'ä') + L"end";
  answer(L"select p.pc_name",
         {{"pc_name", "nvarchar(max)"},
          {"key_value", "nvarchar(255)"},
          {"access_string", "nvarchar(255)"},
          {"flag2", "smallint"}},
         {{L"SHORT", L"1", L"", L"1"}, {name, L"2", L"", L"0"}, {L"LAST", L"3", L"", L"1"}});
  connect();
  loadWorkstations();
  EXPECT_THAT(messages, IsEmpty());
  ASSERT_EQ(workstations.ColWorkStations->count(), 3U);
  EXPECT_EQ(workstations.Item(1)->WorkStation, L"SHORT");
  EXPECT_EQ(workstations.Item(2)->WorkStation, name);
  EXPECT_EQ(workstations.Item(3)->configID, 3);
}

TEST_F(WireFailureTest, LettersOutsideTheBasicPlaneArriveWhole) {
  const std::wstring name = fromUtf8("\xF0\x9F\x8F\xA5 clinic");
  answer(L"select p.pc_name", kColumns, {{name, L"1", L"", L"1"}});
  connect();
  loadWorkstations();
  ASSERT_EQ(workstations.ColWorkStations->count(), 1U);
  EXPECT_EQ(workstations.Item(1)->WorkStation, name);
}

}  // namespace
}  // namespace tlpacscfg::test
