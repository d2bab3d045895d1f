#include "odbc/dialect.h"

#include "config/columns.h"
#include "support/text.h"
#include "harness/errors.h"
#include "harness/fake_client.h"

namespace tlpacscfg::test {
namespace {

using Statements = std::vector<std::wstring>;

const std::wstring kWorkstationList =
    L"select p.pc_name,key_value = (select key_value from system_workstation_cfg where key_name = "
    L"'PACSConfig' and pc_name = p.pc_name), access_string, p.flag2 from system_pc_names p";

TEST(DialectTest, TheNameOfTheDatabaseDeterminesTheDialect) {
  EXPECT_EQ(dialectOf(L"Microsoft SQL Server"), Dialect::SqlServer);
  EXPECT_EQ(dialectOf(L"SQLite"), Dialect::Sqlite);
  EXPECT_EQ(dialectOf(L"MDBTOOLS"), Dialect::AccessReader);
  EXPECT_EQ(dialectOf(L"ACCESS"), Dialect::SqlServer);
  EXPECT_EQ(dialectOf(L""), Dialect::SqlServer);
}

TEST(DialectTest, SqlServerGetsEveryTextUntouched) {
  for (const std::wstring& sql :
       {std::wstring(L"SELECT GetDate()"), kWorkstationList, loadingStatement(), std::wstring(),
        std::wstring(
            L"DELETE FROM t\r\n\r\nINSERT into t\r\nVALUES('\x00FC''', GETDATE())\r\n\r\n"),
        std::wstring(L"SELECT TOP 1 a FROM t ORDER BY a DESC")}) {
    EXPECT_EQ(statementsFor(Dialect::SqlServer, sql), Statements{sql});
  }
}

TEST(SqliteDialectTest, TheServersClockIsTheLocalTime) {
  EXPECT_EQ(statementsFor(Dialect::Sqlite, L"SELECT GetDate()"),
            Statements{L"SELECT datetime('now','localtime')"});
  EXPECT_EQ(
      statementsFor(Dialect::Sqlite,
                    L"INSERT INTO System_offline_db_updates VALUES(-1, 3, GETDATE(), 0, NULL)"),
      Statements{L"INSERT INTO System_offline_db_updates VALUES(-1, 3, "
                 L"datetime('now','localtime'), 0, NULL)"});
}

TEST(SqliteDialectTest, WordsInTextsAreUnchanged) {
  const std::wstring sql = L"INSERT into t\r\nVALUES('GETDATE()', 'SELECT TOP 1 a')";
  EXPECT_EQ(statementsFor(Dialect::Sqlite, sql), Statements{sql});
}

TEST(SqliteDialectTest, ALimitIsMovedToTheEnd) {
  EXPECT_EQ(
      statementsFor(Dialect::Sqlite,
                    L"SELECT TOP 1 config_id FROM Interface_PACS_cfg ORDER BY config_id DESC"),
      Statements{L"SELECT config_id FROM Interface_PACS_cfg ORDER BY config_id DESC LIMIT 1"});
}

TEST(SqliteDialectTest, AnAssignedSubqueryGetsItsNameAfterIt) {
  EXPECT_EQ(statementsFor(Dialect::Sqlite, kWorkstationList),
            Statements{L"select p.pc_name,(select key_value from system_workstation_cfg where "
                       L"key_name = 'PACSConfig' and pc_name = p.pc_name) AS key_value, "
                       L"access_string, p.flag2 from system_pc_names p"});
}

TEST(SqliteDialectTest, AComparisonWithASubqueryStays) {
  const std::wstring sql = L"SELECT a FROM t WHERE b = (SELECT c FROM u)";
  EXPECT_EQ(statementsFor(Dialect::Sqlite, sql), Statements{sql});
}

TEST(SqliteDialectTest, AnAssignmentOfAnUpdateStays) {
  const std::wstring sql = L"UPDATE t\r\nSET a = 1, b = 'x'\r\nWHERE c = 2";
  EXPECT_EQ(statementsFor(Dialect::Sqlite, sql), Statements{sql});
}

TEST(SqliteDialectTest, BlankLinesSeparateStatements) {
  EXPECT_EQ(statementsFor(Dialect::Sqlite,
                          L"DELETE FROM t\r\nWHERE a = 'x' and \r\nb = 1\r\n\r\nINSERT into t\r\n"
                          L"VALUES(1)\r\n\r\n"),
            (Statements{L"DELETE FROM t\r\nWHERE a = 'x' and \r\nb = 1\r\n\r\n",
                        L"INSERT into t\r\nVALUES(1)\r\n\r\n"}));
}

TEST(SqliteDialectTest, BlankLinesInTextsSeparateNothing) {
  const std::wstring sql = L"INSERT into t\r\nVALUES('a\r\n\r\nDELETE FROM t')";
  EXPECT_EQ(statementsFor(Dialect::Sqlite, sql), Statements{sql});
}

TEST(SqliteDialectTest, BlankLinesBeforeNoStatementSeparateNothing) {
  const std::wstring sql = L"INSERT into t\r\n\r\nVALUES(1)";
  EXPECT_EQ(statementsFor(Dialect::Sqlite, sql), Statements{sql});
}

TEST(SqliteDialectTest, OneLineBreakSeparatesNothing) {
  const std::wstring sql = L"select config_id \r\n from Interface_PACS_cfg \r\norder by config_id";
  EXPECT_EQ(statementsFor(Dialect::Sqlite, sql), Statements{sql});
}

TEST(SqliteDialectTest, LeadingBlankLinesAreNoStatement) {
  EXPECT_EQ(statementsFor(Dialect::Sqlite, L"\r\n\r\nSELECT 1").back(), L"SELECT 1");
}

TEST(SqliteDialectTest, TextsOutsideAsciiAreWrittenAsBytes) {
  EXPECT_EQ(statementsFor(Dialect::Sqlite, L"SELECT '\x00FC''s', 'a''b'"),
            Statements{L"SELECT CAST(x'C3BC2773' AS TEXT), 'a''b'"});
}

}  // namespace
}  // namespace tlpacscfg::test
