#include "odbc/access_reader.h"

#include "config/columns.h"
#include "harness/errors.h"
#include "harness/fake_client.h"

namespace tlpacscfg::test {
namespace {

class AccessReaderTest : public ::testing::Test {
 protected:
  static std::vector<Cells> apply(std::wstring_view sql, const std::vector<Cells>& fetched) {
    const Table result = accessReaderQueryFor(sql).apply(tableOf(fetched));
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

TEST_F(AccessReaderTest, ConditionsAndOrderAreLeftToTheClient) {
  const AccessReaderQuery query =
      accessReaderQueryFor(L"SELECT a, b FROM t WHERE c = 'O''Brien' AND a = 38 ORDER BY d, b");
  EXPECT_EQ(query.statement, L"SELECT a, b, c, d FROM t");
  EXPECT_EQ(query.wantedColumns, 2U);
  ASSERT_EQ(query.conditions.size(), 2U);
  EXPECT_EQ(query.conditions[0].column, 2U);
  EXPECT_EQ(query.conditions[0].value, L"O'Brien");
  EXPECT_EQ(query.conditions[1].column, 0U);
  EXPECT_EQ(query.conditions[1].value, L"38");
  EXPECT_EQ(query.orderBy, (std::vector<std::size_t>{3, 1}));
}

TEST_F(AccessReaderTest, TheComponentsStatementsAreAllPlain) {
  EXPECT_EQ(accessReaderQueryFor(loadingStatement()).wantedColumns, 38U);
  EXPECT_EQ(accessReaderQueryFor(L"SELECT key_value FROM System_workstation_cfg WHERE key_name = "
                                 L"'PACSConfig' AND pc_name = 'X'")
                .statement,
            L"SELECT key_value, key_name, pc_name FROM System_workstation_cfg");
  EXPECT_EQ(
      accessReaderQueryFor(L"SELECT access_string, flag2 FROM System_pc_names WHERE pc_name = 'X'")
          .statement,
      L"SELECT access_string, flag2, pc_name FROM System_pc_names");
}

TEST_F(AccessReaderTest, AnyOtherStatementIsRefused) {
  for (const wchar_t* sql :
       {L"", L"DELETE FROM t", L"SELECT GetDate()", L"SELECT * FROM t", L"SELECT a FROM t, u",
        L"SELECT a FROM t WHERE b > 1", L"SELECT a FROM t WHERE b =", L"SELECT a FROM",
        L"SELECT a FROM t ORDER a", L"SELECT a FROM t ORDER BY a DESC"}) {
    EXPECT_TYPE_MISMATCH(accessReaderQueryFor(sql));
  }
}

TEST_F(AccessReaderTest, NumbersAreOrderedByValueBetweenNullAndTexts) {
  EXPECT_EQ(apply(L"SELECT a FROM t ORDER BY a",
                  {{L"10"}, {L"b"}, {L"9"}, {std::nullopt}, {L"A"}, {L"-1"}}),
            (std::vector<Cells>{{std::nullopt}, {L"-1"}, {L"9"}, {L"10"}, {L"A"}, {L"b"}}));
}

TEST_F(AccessReaderTest, EqualRowsKeepTheirOrder) {
  EXPECT_EQ(apply(L"SELECT a, b FROM t ORDER BY a", {{L"1", L"x"}, {L"0", L"y"}, {L"1", L"z"}}),
            (std::vector<Cells>{{L"0", L"y"}, {L"1", L"x"}, {L"1", L"z"}}));
}

TEST_F(AccessReaderTest, ConditionsCompareWithoutRegardToCaseAndNeverWithNull) {
  EXPECT_EQ(apply(L"SELECT a FROM t WHERE b = 'o''brien'",
                  {{L"1", L"O'BRIEN"}, {L"2", L"OBRIEN"}, {L"3", std::nullopt}, {L"4", L""}}),
            (std::vector<Cells>{{L"1"}}));
}

TEST_F(AccessReaderTest, NoRowsStayNoRows) {
  EXPECT_TRUE(apply(L"SELECT a FROM t ORDER BY a", {}).empty());
}

}  // namespace
}  // namespace tlpacscfg::test
