#pragma once

#include <windows.h>
#include <commctrl.h>

#include <cstddef>
#include <optional>

#include "support/list_sort.h"

namespace tlpacscfg::win32 {

/// A list view in report style that asks its rows from a source (LVS_OWNERDATA), so that filling
/// and sorting any number of them is instant. One row at most is selected.
class ListView {
 public:
  /// Neither argument is owned; `rows` outlives the control. Typed letters look for a row by its
  /// text in the key column.
  void attach(HWND list, const ListRows& rows, std::size_t keyColumn);

  void addColumn(const wchar_t* header, int widthPixels);
  int columnWidth(int column) const;
  void setColumnWidth(int column, int widthPixels);

  /// Shows the source's rows anew, none of them selected.
  void refill();
  /// Draws the rows again where they are.
  void redraw();

  std::optional<std::size_t> selectedRow() const;
  /// Selects and focuses the row and scrolls it into view.
  void select(std::size_t row);
  void clearSelection();

  /// Shows an arrow in the header of the column, or in none for a negative column.
  void showSortArrow(int column, bool ascending);

  /// The size of the control that shows so many rows and all columns without scroll bars.
  SIZE sizeForRows(int rows) const;

  /// Answers the control's questions for texts and for rows that begin with typed letters. False
  /// when the notification is another one.
  bool answer(NMHDR& header, LRESULT& result) const;

 private:
  int heightOfRow() const;
  int findByPrefix(const NMLVFINDITEMW& request) const;

  HWND list_ = nullptr;
  const ListRows* rows_ = nullptr;
  std::size_t keyColumn_ = 0;
  int columns_ = 0;
};

}  // namespace tlpacscfg::win32
