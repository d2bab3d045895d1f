#include "data/result_set.h"

#include "harness/errors.h"
#include "harness/fake_client.h"

namespace tlpacscfg::test {
namespace {

constexpr const wchar_t* kClosed = L"Object variable or With block variable not set";

TEST(TableTest, CellsAreFoundByColumnAndRow) {
  const Table table = tableOf({{L"a", std::nullopt}, {L"", L"d"}});
  EXPECT_EQ(table.columns(), 2U);
  EXPECT_EQ(table.rows(), 2U);
  EXPECT_EQ(table.at(0, 0), L"a");
  EXPECT_EQ(table.at(1, 0), std::nullopt);
  EXPECT_EQ(table.at(0, 1), L"");
  EXPECT_EQ(table.at(1, 1), L"d");
}

TEST(TableTest, ALargeTableKeepsEveryCell) {
  Table table(3);
  for (int i = 0; i < 3000; ++i) {
    table.append(i % 7 == 0 ? Cell() : Cell(std::to_wstring(i)));
  }
  ASSERT_EQ(table.rows(), 1000U);
  for (int i = 0; i < 3000; ++i) {
    const std::wstring text = std::to_wstring(i);
    EXPECT_EQ(table.at(static_cast<std::size_t>(i % 3), static_cast<std::size_t>(i / 3)),
              i % 7 == 0 ? Cell() : Cell(text));
  }
}

TEST(TableTest, AClearedTableKeepsItsColumns) {
  Table table = tableOf({{L"a", L"b"}});
  table.clear();
  EXPECT_EQ(table.columns(), 2U);
  EXPECT_EQ(table.rows(), 0U);
  EXPECT_EQ(Table().rows(), 0U);
}

TEST(ResultSetTest, RowsAreReadForwardToTheEnd) {
  ResultSet rows(tableOf({{L"a"}, {L"b"}}));
  EXPECT_FALSE(rows.EndOfData());
  EXPECT_EQ(rows.Column(0), L"a");
  rows.MoveNext();
  EXPECT_EQ(rows.Column(0), L"b");
  rows.MoveNext();
  EXPECT_TRUE(rows.EndOfData());
}

TEST(ResultSetTest, AColumnThatDoesNotExistIsOutOfRange) {
  ResultSet rows(tableOf({{L"a"}}));
  EXPECT_RUNTIME_ERROR(rows.Column(1), 9, L"Subscript out of range");
  rows.MoveNext();
  EXPECT_RUNTIME_ERROR(rows.Column(0), 9, L"Subscript out of range");
}

TEST(ResultSetTest, AnEmptyResultIsAtItsEnd) { EXPECT_TRUE(ResultSet(Table()).EndOfData()); }

TEST(ResultSetTest, AClosedResultSetIsAnErrorToUse) {
  ResultSet rows(tableOf({{L"a"}}));
  rows.Close();
  EXPECT_RUNTIME_ERROR(rows.EndOfData(), 91, kClosed);
  EXPECT_RUNTIME_ERROR(rows.MoveNext(), 91, kClosed);
  EXPECT_RUNTIME_ERROR(rows.Column(0), 91, kClosed);
  EXPECT_RUNTIME_ERROR(rows.Close(), 91, kClosed);
}

}  // namespace
}  // namespace tlpacscfg::test
