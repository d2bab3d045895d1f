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

TEST(DialectTest, TheDatabaseSaysWhichDialectItSpeaks) {
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

TEST(SqliteDialectTest, WordsInTextsStay) {
  const std::wstring sql = L"INSERT into t\r\nVALUES('GETDATE()', 'SELECT TOP 1 a')";
  EXPECT_EQ(statementsFor(Dialect::Sqlite, sql), Statements{sql});
}

TEST(SqliteDialectTest, ALimitStandsAtTheEnd) {
  EXPECT_EQ(
      statementsFor(Dialect::Sqlite,
                    L"SELECT TOP 1 config_id FROM Interface_PACS_cfg ORDER BY config_id DESC"),
      Statements{L"SELECT config_id FROM Interface_PACS_cfg ORDER BY config_id DESC LIMIT 1"});
}

TEST(SqliteDialectTest, AnAssignedSubqueryIsNamedBehindIt) {
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

TEST(SqliteDialectTest, TextsOutsideAsciiAreSpelledInBytes) {
  EXPECT_EQ(statementsFor(Dialect::Sqlite, L"SELECT '\x00FC''s', 'a''b'"),
            Statements{L"SELECT CAST(x'C3BC2773' AS TEXT), 'a''b'"});
}

class ClientQueryTest : public ::testing::Test {
 protected:
  static std::vector<Cells> apply(std::wstring_view sql, const std::vector<Cells>& fetched) {
    const Table result = clientQueryFor(sql).apply(tableOf(fetched));
    std::vector<Cells> rows;
    for (std::size_t row = 0; row < result.rows(); ++row) {
      Cells cells;
      for (std::size_t column = 0; column < result.columns(); ++column) {
        const Cell cell = result.at(column, row);
        cells.push_back(cell ? std::optional(std::wstring(*cell)) : std::nullopt);
      }
      rows.push_back(std::move(cells));
    }
    return rows;
  }
};

TEST_F(ClientQueryTest, ConditionsAndOrderAreLeftToTheClient) {
  const ClientQuery query =
      clientQueryFor(L"SELECT a, b FROM t WHERE c = 'O''Brien' AND a = 38 ORDER BY d, b");
  EXPECT_EQ(query.statement, L"SELECT a, b, c, d FROM t");
  EXPECT_EQ(query.wantedColumns, 2U);
  ASSERT_EQ(query.conditions.size(), 2U);
  EXPECT_EQ(query.conditions[0].column, 2U);
  EXPECT_EQ(query.conditions[0].value, L"O'Brien");
  EXPECT_EQ(query.conditions[1].column, 0U);
  EXPECT_EQ(query.conditions[1].value, L"38");
  EXPECT_EQ(query.orderBy, (std::vector<std::size_t>{3, 1}));
}

TEST_F(ClientQueryTest, TheComponentsStatementsAreAllPlain) {
  EXPECT_EQ(clientQueryFor(loadingStatement()).wantedColumns, 38U);
  EXPECT_EQ(clientQueryFor(L"SELECT key_value FROM System_workstation_cfg WHERE key_name = "
                           L"'PACSConfig' AND pc_name = 'X'")
                .statement,
            L"SELECT key_value, key_name, pc_name FROM System_workstation_cfg");
  EXPECT_EQ(clientQueryFor(L"SELECT access_string, flag2 FROM System_pc_names WHERE pc_name = 'X'")
                .statement,
            L"SELECT access_string, flag2, pc_name FROM System_pc_names");
}

TEST_F(ClientQueryTest, AnyOtherStatementIsRefused) {
  for (const wchar_t* sql :
       {L"", L"DELETE FROM t", L"SELECT GetDate()", L"SELECT * FROM t", L"SELECT a FROM t, u",
        L"SELECT a FROM t WHERE b > 1", L"SELECT a FROM t WHERE b =", L"SELECT a FROM",
        L"SELECT a FROM t ORDER a", L"SELECT a FROM t ORDER BY a DESC"}) {
    EXPECT_TYPE_MISMATCH(clientQueryFor(sql));
  }
}

TEST_F(ClientQueryTest, NumbersAreOrderedByValueBetweenNullAndTexts) {
  EXPECT_EQ(apply(L"SELECT a FROM t ORDER BY a",
                  {{L"10"}, {L"b"}, {L"9"}, {std::nullopt}, {L"A"}, {L"-1"}}),
            (std::vector<Cells>{{std::nullopt}, {L"-1"}, {L"9"}, {L"10"}, {L"A"}, {L"b"}}));
}

TEST_F(ClientQueryTest, EqualRowsKeepTheirOrder) {
  EXPECT_EQ(apply(L"SELECT a, b FROM t ORDER BY a", {{L"1", L"x"}, {L"0", L"y"}, {L"1", L"z"}}),
            (std::vector<Cells>{{L"0", L"y"}, {L"1", L"x"}, {L"1", L"z"}}));
}

TEST_F(ClientQueryTest, ConditionsCompareWithoutRegardToCaseAndNeverWithNull) {
  EXPECT_EQ(apply(L"SELECT a FROM t WHERE b = 'o''brien'",
                  {{L"1", L"O'BRIEN"}, {L"2", L"OBRIEN"}, {L"3", std::nullopt}, {L"4", L""}}),
            (std::vector<Cells>{{L"1"}}));
}

TEST_F(ClientQueryTest, NoRowsStayNoRows) {
  EXPECT_TRUE(apply(L"SELECT a FROM t ORDER BY a", {}).empty());
}

}  // namespace
}  // namespace tlpacscfg::test
