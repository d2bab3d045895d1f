#include "ui/win32/list_view.h"

#include <algorithm>
#include <string>

#include "support/text.h"

namespace tlpacscfg::win32 {

void ListView::attach(HWND list, const ListRows& rows, std::size_t keyColumn) {
  list_ = list;
  rows_ = &rows;
  keyColumn_ = keyColumn;
  constexpr DWORD kStyle = LVS_EX_FULLROWSELECT | LVS_EX_DOUBLEBUFFER | LVS_EX_LABELTIP;
  ListView_SetExtendedListViewStyleEx(list_, kStyle, kStyle);
}

void ListView::addColumn(const wchar_t* header, int widthPixels) {
  std::wstring text = header;
  LVCOLUMNW column{};
  column.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_SUBITEM;
  column.pszText = text.data();
  column.cx = widthPixels;
  column.iSubItem = columns_;
  SendMessageW(list_, LVM_INSERTCOLUMNW, static_cast<WPARAM>(columns_++),
               reinterpret_cast<LPARAM>(&column));
}

int ListView::columnWidth(int column) const { return ListView_GetColumnWidth(list_, column); }

void ListView::setColumnWidth(int column, int widthPixels) {
  if (columnWidth(column) != widthPixels) ListView_SetColumnWidth(list_, column, widthPixels);
}

void ListView::refill() {
  clearSelection();
  ListView_SetItemCountEx(list_, static_cast<int>(rows_->rowCount()), 0);
  redraw();
}

void ListView::redraw() { InvalidateRect(list_, nullptr, TRUE); }

std::optional<std::size_t> ListView::selectedRow() const {
  const int row = ListView_GetNextItem(list_, -1, LVNI_SELECTED);
  if (row < 0) return std::nullopt;
  return static_cast<std::size_t>(row);
}

void ListView::select(std::size_t row) {
  const int index = static_cast<int>(row);
  ListView_SetItemState(list_, index, LVIS_SELECTED | LVIS_FOCUSED, LVIS_SELECTED | LVIS_FOCUSED);
  ListView_EnsureVisible(list_, index, FALSE);
}

void ListView::clearSelection() {
  // Only the rows in question: asking for all of them at once takes a look at each.
  for (const UINT state : {LVNI_SELECTED, LVNI_FOCUSED}) {
    const int row = ListView_GetNextItem(list_, -1, state);
    if (row >= 0) ListView_SetItemState(list_, row, 0, LVIS_SELECTED | LVIS_FOCUSED);
  }
}

void ListView::showSortArrow(int column, bool ascending) {
  const HWND header = ListView_GetHeader(list_);
  for (int i = 0; i < columns_; ++i) {
    HDITEMW item{};
    item.mask = HDI_FORMAT;
    SendMessageW(header, HDM_GETITEMW, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(&item));
    item.fmt &= ~(HDF_SORTUP | HDF_SORTDOWN);
    if (i == column) item.fmt |= ascending ? HDF_SORTUP : HDF_SORTDOWN;
    SendMessageW(header, HDM_SETITEMW, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(&item));
  }
}

int ListView::heightOfRow() const {
  // Only an existing row has a height: an empty list gets one to measure.
  const int count = ListView_GetItemCount(list_);
  ListView_SetItemCountEx(list_, std::max(count, 1), 0);
  RECT row{};
  ListView_GetItemRect(list_, 0, &row, LVIR_BOUNDS);
  ListView_SetItemCountEx(list_, count, 0);
  return static_cast<int>(row.bottom - row.top);
}

SIZE ListView::sizeForRows(int rows) const {
  RECT header{};
  GetWindowRect(ListView_GetHeader(list_), &header);
  int width = 0;
  for (int i = 0; i < columns_; ++i) width += columnWidth(i);
  const int rowHeight = heightOfRow();
  RECT frame{0, 0, width, header.bottom - header.top + rows * rowHeight};
  AdjustWindowRectEx(&frame, static_cast<DWORD>(GetWindowLongW(list_, GWL_STYLE)) & ~WS_VSCROLL,
                     FALSE, static_cast<DWORD>(GetWindowLongW(list_, GWL_EXSTYLE)));
  return {frame.right - frame.left, frame.bottom - frame.top};
}

bool ListView::answer(NMHDR& header, LRESULT& result) const {
  if (header.hwndFrom != list_) return false;
  if (header.code == LVN_GETDISPINFOW) {
    LVITEMW& item = reinterpret_cast<NMLVDISPINFOW&>(header).item;
    if ((item.mask & LVIF_TEXT) != 0 && item.cchTextMax > 0) {
      const std::wstring_view text = rows_->cell(static_cast<std::size_t>(item.iItem),
                                                 static_cast<std::size_t>(item.iSubItem));
      const std::size_t room = static_cast<std::size_t>(item.cchTextMax) - 1;
      const std::size_t copied = text.copy(item.pszText, room);
      item.pszText[copied] = L'\0';
    }
    return true;
  }
  if (header.code == LVN_ODFINDITEMW) {
    result = findByPrefix(reinterpret_cast<const NMLVFINDITEMW&>(header));
    return true;
  }
  return false;
}

int ListView::findByPrefix(const NMLVFINDITEMW& request) const {
  constexpr int kNotFound = -1;
  if ((request.lvfi.flags & (LVFI_STRING | LVFI_PARTIAL)) == 0) return kNotFound;
  const std::wstring wanted = upperCase(request.lvfi.psz);
  const bool partial = (request.lvfi.flags & LVFI_PARTIAL) != 0;
  const std::size_t count = rows_->rowCount();
  const std::size_t start = static_cast<std::size_t>(std::max(request.iStart, 0));
  for (std::size_t i = 0; i < count; ++i) {
    const std::size_t row = (start + i) % count;
    if (row < start && (request.lvfi.flags & LVFI_WRAP) == 0) return kNotFound;
    std::wstring_view text = rows_->cell(row, keyColumn_);
    if (partial) text = text.substr(0, wanted.size());
    if (upperCase(text) == wanted) return static_cast<int>(row);
  }
  return kNotFound;
}

}  // namespace tlpacscfg::win32
