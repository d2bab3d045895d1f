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

/// The variables of module modListView, which describe the last sort; modMain says which thread may
/// use them.
struct ModListView {
  std::int16_t g_intSortColumn = 0;  ///< Counts from 0.
  std::int16_t g_intSortOrder = kAscending;
};
inline ModListView modListView;

/// 0 when the first comes before the second in the current order, 1 when they are equal, 2 when it
/// comes after. A text that does not convert counts as 0.
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

/// Reverses the list's sort order and sorts by the column, which counts from 1. Equal rows keep
/// their order; an unknown sort type leaves all rows as they are.
void SortListView(SortableList& list, std::int16_t column, std::int16_t sortType);

/// A key whose byte order is the order of the texts in the user's language, without regard to case.
std::string collationKey(std::wstring_view text);

}  // namespace tlpacscfg
