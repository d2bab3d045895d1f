#pragma once

#include <cstdint>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tlpacscfg {

enum class SortType : std::int16_t { Text = 0, WholeNumber = 1, Date = 2 };
inline constexpr std::int16_t kAscending = 0;
inline constexpr std::int16_t kDescending = 1;

/// What the comparison procedures read: the zero-based column and the order of the last sort.
extern std::int16_t g_intSortColumn;
extern std::int16_t g_intSortOrder;

/// 0, 1 or 2, never negative: for an ascending order 0 says that the first is below the second,
/// for a descending one that it is above. A text that does not convert counts as 0.
std::int16_t CompareNumbers(std::wstring_view first, std::wstring_view second);
std::int16_t CompareDates(std::wstring_view first, std::wstring_view second);

/// The rows that a list in report view shows. Rows and columns count from 0.
class ListRows {
 public:
  virtual ~ListRows() = default;
  virtual std::size_t rowCount() const = 0;
  virtual std::wstring_view cell(std::size_t row, std::size_t column) const = 0;
};

/// Rows that can be put into an order.
class SortableList : public ListRows {
 public:
  /// Shows the rows in the given order: `order[i]` is the row that moves to place i.
  virtual void reorder(const std::vector<std::size_t>& order) = 0;

  std::int16_t sortOrder = kAscending;
};

/// Turns the list's order round and sorts by the one-based column; any other sort type than the
/// three leaves the rows as they are. Rows that compare equal keep their order.
void SortListView(SortableList& list, std::int16_t column, std::int16_t sortType);

/// A key whose byte order is the order of the texts to the user, without regard to case.
std::string collationKey(std::wstring_view text);

}  // namespace tlpacscfg
