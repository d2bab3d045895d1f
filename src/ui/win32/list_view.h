#pragma once

#include <windows.h>
#include <commctrl.h>

#include <cstddef>
#include <optional>
#include <vector>

#include "support/list_sort.h"
#include "ui/win32/subclass.h"

namespace tlpacscfg::win32 {

/// A list view in report style that asks its rows from a source (LVS_OWNERDATA), so that filling
/// and sorting any number of them is instant. One row at most is selected; the user can select
/// another one, but not none.
class ListView {
 public:
  /// Neither argument is owned; `rows` outlives the control. Typed letters look for a row by its
  /// text in the key column.
  void attach(HWND list, const ListRows& rows, std::size_t keyColumn);

  /// A column of the width 0 serves the program: the user cannot open it.
  void addColumn(const wchar_t* header, int widthPixels);
  int columnWidth(int column) const;
  void setColumnWidth(int column, int widthPixels);
  /// Lets the column take all room that the others leave, whenever the list changes its size or its
  /// scroll bar. It never gets narrower than that or than the user makes it.
  void stretchColumn(int column, int minWidthPixels);

  /// Shows the source's rows anew, none of them selected.
  void refill();
  /// Draws the rows again where they are.
  void redraw();

  std::optional<std::size_t> selectedRow() const;
  /// The row that was selected before the user's last key or click, unless the program has cleared
  /// the selection since.
  std::optional<std::size_t> rowBeforeInput() const { return rowBeforeInput_; }
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
  static constexpr int kNoColumn = -1;

  std::optional<LRESULT> onMessage(UINT message, WPARAM wParam, LPARAM lParam);
  std::optional<LRESULT> onHeader(const NMHEADERW& change);
  LRESULT keepSelection(UINT message, WPARAM wParam, LPARAM lParam);
  bool isBesideRows(LPARAM place) const;
  void stretch();
  int roomFor(int column) const;
  int columnCount() const { return static_cast<int>(hiddenColumns_.size()); }
  int heightOfRow() const;
  int findByPrefix(const NMLVFINDITEMW& request) const;

  HWND list_ = nullptr;
  const ListRows* rows_ = nullptr;
  std::size_t keyColumn_ = 0;
  Subclass messages_;

  std::optional<std::size_t> rowBeforeInput_;
  bool restoring_ = false;

  std::vector<bool> hiddenColumns_;
  int stretchedColumn_ = kNoColumn;
  int minStretchedWidth_ = 0;
  /// What the stretched column leaves free at the right, because it was made or dragged like that.
  int slack_ = 0;
  bool stretching_ = false;
};

}  // namespace tlpacscfg::win32
