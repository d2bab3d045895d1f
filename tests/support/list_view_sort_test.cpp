#include "support/list_view_sort.h"

#include <gtest/gtest.h>

namespace tlpacscfg {
namespace {

/// Rows of texts; keeps its order in `shown`, as indices into the rows it began with.
class Rows : public SortableList {
 public:
  explicit Rows(std::vector<std::vector<std::wstring>> rows) : rows_(std::move(rows)) {}

  std::size_t rowCount() const override { return rows_.size(); }
  std::wstring_view cell(std::size_t row, std::size_t column) const override {
    return rows_.at(row).at(column);
  }
  void reorder(const std::vector<std::size_t>& order) override {
    std::vector<std::vector<std::wstring>> rows;
    for (const std::size_t row : order) rows.push_back(rows_.at(row));
    rows_ = std::move(rows);
    ++reordered;
  }

  std::vector<std::wstring> column(std::size_t index) const {
    std::vector<std::wstring> cells;
    for (const auto& row : rows_) cells.push_back(row.at(index));
    return cells;
  }

  int reordered = 0;

 private:
  std::vector<std::vector<std::wstring>> rows_;
};

using Texts = std::vector<std::wstring>;

Rows oneColumn(const Texts& texts) {
  std::vector<std::vector<std::wstring>> rows;
  for (const std::wstring& text : texts) rows.push_back({text});
  return Rows(rows);
}

constexpr std::int16_t kText = 0, kNumber = 1, kDate = 2;

class SortListViewTest : public ::testing::Test {
 protected:
  SortListViewTest() { modListView = {}; }
};

TEST_F(SortListViewTest, TheOrderReversesOnEveryCallWhateverTheColumn) {
  Rows rows({{L"b", L"1"}, {L"a", L"2"}});
  SortListView(rows, 1, kText);
  EXPECT_EQ(rows.sortOrder, kDescending);
  EXPECT_EQ(rows.column(0), (Texts{L"b", L"a"}));
  SortListView(rows, 1, kText);
  EXPECT_EQ(rows.sortOrder, kAscending);
  EXPECT_EQ(rows.column(0), (Texts{L"a", L"b"}));
  SortListView(rows, 2, kNumber);
  EXPECT_EQ(rows.sortOrder, kDescending);
  EXPECT_EQ(rows.column(1), (Texts{L"2", L"1"}));
}

TEST_F(SortListViewTest, ColumnAndOrderAreKeptForTheComparisons) {
  Rows rows({{L"a", L"b", L"c"}});
  SortListView(rows, 3, kDate);
  EXPECT_EQ(modListView.g_intSortColumn, 2);
  EXPECT_EQ(modListView.g_intSortOrder, kDescending);
}

TEST_F(SortListViewTest, AnUnknownSortTypeReversesTheOrderAndSortsNothing) {
  Rows rows = oneColumn({L"b", L"a"});
  SortListView(rows, 1, 3);
  EXPECT_EQ(rows.sortOrder, kDescending);
  EXPECT_EQ(modListView.g_intSortOrder, kDescending);
  EXPECT_EQ(rows.reordered, 0);
}

TEST_F(SortListViewTest, TextsSortWithoutRegardToCase) {
  Rows rows = oneColumn({L"b", L"A", L"a2", L"C"});
  rows.sortOrder = kDescending;
  SortListView(rows, 1, kText);
  EXPECT_EQ(rows.column(0), (Texts{L"A", L"a2", L"b", L"C"}));
}

TEST_F(SortListViewTest, NumbersSortByValue) {
  Rows rows = oneColumn({L"10", L"9", L"-1", L"100"});
  rows.sortOrder = kDescending;
  SortListView(rows, 1, kNumber);
  EXPECT_EQ(rows.column(0), (Texts{L"-1", L"9", L"10", L"100"}));
  SortListView(rows, 1, kNumber);
  EXPECT_EQ(rows.column(0), (Texts{L"100", L"10", L"9", L"-1"}));
}

TEST_F(SortListViewTest, ATextThatIsNoNumberSortsAsZero) {
  Rows rows = oneColumn({L"1", L"N/A", L"-1", L""});
  rows.sortOrder = kDescending;
  SortListView(rows, 1, kNumber);
  EXPECT_EQ(rows.column(0), (Texts{L"-1", L"N/A", L"", L"1"}));
}

TEST_F(SortListViewTest, ANumberTooLargeForALongSortsAsZero) {
  Rows rows = oneColumn({L"1", L"2147483648", L"2147483647"});
  rows.sortOrder = kDescending;
  SortListView(rows, 1, kNumber);
  EXPECT_EQ(rows.column(0), (Texts{L"2147483648", L"1", L"2147483647"}));
}

TEST_F(SortListViewTest, DatesSortByTime) {
  Rows rows = oneColumn(
      {L"2012-10-24 14:05:09", L"2012-10-24", L"2011-12-31 23:59:59", L"2012-10-24T14:05:10"});
  rows.sortOrder = kDescending;
  SortListView(rows, 1, kDate);
  EXPECT_EQ(rows.column(0), (Texts{L"2011-12-31 23:59:59", L"2012-10-24", L"2012-10-24 14:05:09",
                                   L"2012-10-24T14:05:10"}));
}

TEST_F(SortListViewTest, AnEmptyDateSortsAsZero) {
  Rows rows = oneColumn({L"2012-10-24", L"", L"1950-01-01"});
  rows.sortOrder = kDescending;
  SortListView(rows, 1, kDate);
  EXPECT_EQ(rows.column(0).back(), L"2012-10-24");
  EXPECT_EQ(rows.column(0).front(), L"");
}

TEST_F(SortListViewTest, EqualRowsKeepTheirOrderBothWays) {
  Rows rows({{L"1", L"first"}, {L"1", L"second"}, {L"0", L"third"}});
  SortListView(rows, 1, kNumber);
  EXPECT_EQ(rows.column(1), (Texts{L"first", L"second", L"third"}));
  SortListView(rows, 1, kNumber);
  EXPECT_EQ(rows.column(1), (Texts{L"third", L"first", L"second"}));
}

TEST_F(SortListViewTest, AnEmptyListSorts) {
  Rows rows({});
  SortListView(rows, 1, kText);
  SortListView(rows, 1, kNumber);
  EXPECT_EQ(rows.rowCount(), 0U);
}

TEST_F(SortListViewTest, AHundredThousandRowsSort) {
  Texts texts;
  for (int i = 0; i < 100'000; ++i) texts.push_back(std::to_wstring((i * 7919) % 100'000));
  Rows rows = oneColumn(texts);
  rows.sortOrder = kDescending;
  SortListView(rows, 1, kNumber);
  EXPECT_EQ(rows.cell(0, 0), L"0");
  EXPECT_EQ(rows.cell(99'999, 0), L"99999");
}

TEST(CompareTest, AscendingComparisonsReturnZeroOneTwo) {
  modListView.g_intSortOrder = kAscending;
  EXPECT_EQ(CompareNumbers(L"1", L"2"), 0);
  EXPECT_EQ(CompareNumbers(L"2", L"2"), 1);
  EXPECT_EQ(CompareNumbers(L"3", L"2"), 2);
  EXPECT_EQ(CompareDates(L"2012-10-24", L"2012-10-25"), 0);
  EXPECT_EQ(CompareDates(L"2012-10-24", L"2012-10-24"), 1);
  EXPECT_EQ(CompareDates(L"2012-10-25", L"2012-10-24"), 2);
  EXPECT_EQ(CompareDates(L"2012-10-24 00:30:00", L"2012-10-24"), 2);
}

TEST(CompareTest, DescendingComparisonsReturnTwoOneZero) {
  modListView.g_intSortOrder = kDescending;
  EXPECT_EQ(CompareNumbers(L"1", L"2"), 2);
  EXPECT_EQ(CompareNumbers(L"2", L"2"), 1);
  EXPECT_EQ(CompareNumbers(L"3", L"2"), 0);
  EXPECT_EQ(CompareDates(L"2012-10-24", L"2012-10-25"), 2);
  EXPECT_EQ(CompareDates(L"", L""), 1);
  EXPECT_EQ(CompareDates(L"2012-10-25", L""), 0);
}

TEST(CompareTest, TextsThatDoNotConvertCompareAsZero) {
  modListView.g_intSortOrder = kAscending;
  EXPECT_EQ(CompareNumbers(L"x", L"0"), 1);
  EXPECT_EQ(CompareNumbers(L"", L"1"), 0);
  for (const wchar_t* text :
       {L"x", L"2012-13-01", L"2012-00-10", L"2012-02-30", L"2011-02-29", L"2012-10-24x",
        L"2012-10-24 25:00:00", L"2012-10-24 14:60:00", L"2012-10"}) {
    EXPECT_EQ(CompareDates(text, L""), 1) << text;
  }
  EXPECT_EQ(CompareDates(L"2012-02-29", L""), 2);
  EXPECT_EQ(CompareDates(L"2012-10-24 14:05", L"2012-10-24"), 2);
  EXPECT_EQ(CompareDates(L"2012-10-24 14:05:09.063", L"2012-10-24 14:05:08"), 2);
}

}  // namespace
}  // namespace tlpacscfg
