#pragma once

#include <windows.h>
#include <commctrl.h>

#include <cstddef>
#include <optional>
#include <vector>

#include "support/list_view_sort.h"
#include "ui/win32/subclass.h"

namespace tlpacscfg::win32 {

/// A list view in report style that reads its rows from a source (LVS_OWNERDATA), which makes
/// filling and sorting fast. At most one row is selected; the user can select another one, but not
/// clear the selection.
class ListView {
 public:
  /// Neither argument is owned; `rows` outlives the control. Typed letters search the key column.
  void attach(HWND list, const ListRows& rows, std::size_t keyColumn);

  /// A column of the width 0 is hidden: the user cannot widen it.
  void addColumn(const wchar_t* header, int widthPixels);
  int columnWidth(int column) const;
  void setColumnWidth(int column, int widthPixels);
  /// Makes the column fill the room left by the others whenever the size of the list or its scroll
  /// bar changes. It never becomes narrower than its present width or than the user made it.
  void stretchColumn(int column, int minWidthPixels);

  /// Shows the source's rows again, with no selection.
  void refill();
  /// Redraws the rows without moving them.
  void redraw();

  std::optional<std::size_t> selectedRow() const;
  /// The row that was selected before the user's last key or click, unless the program has cleared
  /// the selection since.
  std::optional<std::size_t> rowBeforeInput() const { return rowBeforeInput_; }
  /// Selects and focuses the row and scrolls it into view.
  void select(std::size_t row);
  void clearSelection();

  /// Shows an arrow in the header of the column; none for a negative column.
  void showSortArrow(int column, bool ascending);

  /// The size at which the control shows this many rows and all columns without scroll bars.
  SIZE sizeForRows(int rows) const;

  /// Handles the control's requests for texts and for rows that begin with typed letters. False
  /// for other notifications.
  bool answer(NMHDR& header, LRESULT& result) const;

 private:
  static constexpr int kNoColumn = -1;

  std::optional<LRESULT> onMessage(UINT message, WPARAM wParam, LPARAM lParam);
  std::optional<LRESULT> onHeader(const NMHEADERW& change);
  LRESULT colour(NMLVCUSTOMDRAW& drawing) const;
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
  /// The room to the right of the stretched column, as designed or as left by the user.
  int slack_ = 0;
  bool stretching_ = false;
};

}  // namespace tlpacscfg::win32
