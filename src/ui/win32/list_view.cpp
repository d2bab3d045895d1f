#include "ui/win32/list_view.h"

#include <algorithm>
#include <string>

#include "support/scope_exit.h"
#include "support/text.h"

namespace tlpacscfg::win32 {

void ListView::attach(HWND list, const ListRows& rows, std::size_t keyColumn) {
  list_ = list;
  rows_ = &rows;
  keyColumn_ = keyColumn;
  rowBeforeInput_.reset();
  hiddenColumns_.clear();
  stretchedColumn_ = kNoColumn;
  messages_.attach(list_, [this](UINT message, WPARAM wParam, LPARAM lParam) {
    return onMessage(message, wParam, lParam);
  });
  constexpr DWORD kStyle = LVS_EX_FULLROWSELECT | LVS_EX_DOUBLEBUFFER | LVS_EX_LABELTIP;
  ListView_SetExtendedListViewStyleEx(list_, kStyle, kStyle);
}

void ListView::addColumn(const wchar_t* header, int widthPixels) {
  std::wstring text = header;
  LVCOLUMNW column{};
  column.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_SUBITEM;
  column.pszText = text.data();
  column.cx = widthPixels;
  column.iSubItem = columnCount();
  SendMessageW(list_, LVM_INSERTCOLUMNW, static_cast<WPARAM>(columnCount()),
               reinterpret_cast<LPARAM>(&column));
  hiddenColumns_.push_back(widthPixels == 0);
}

int ListView::columnWidth(int column) const { return ListView_GetColumnWidth(list_, column); }

void ListView::setColumnWidth(int column, int widthPixels) {
  if (columnWidth(column) != widthPixels) ListView_SetColumnWidth(list_, column, widthPixels);
}

void ListView::stretchColumn(int column, int minWidthPixels) {
  stretchedColumn_ = column;
  minStretchedWidth_ = minWidthPixels;
  slack_ = std::max(roomFor(column) - columnWidth(column), 0);
}

int ListView::roomFor(int column) const {
  RECT client{};
  GetClientRect(list_, &client);
  int room = static_cast<int>(client.right);
  for (int i = 0; i < columnCount(); ++i) {
    if (i != column) room -= columnWidth(i);
  }
  return room;
}

void ListView::stretch() {
  if (stretchedColumn_ == kNoColumn || stretching_) return;
  stretching_ = true;
  const ScopeExit done([this] { stretching_ = false; });
  // A new width may show or hide a scroll bar and so change the room: repeats a few times at most.
  for (int i = 0; i < 3; ++i) {
    setColumnWidth(stretchedColumn_,
                   std::max(minStretchedWidth_, roomFor(stretchedColumn_) - slack_));
  }
}

void ListView::refill() {
  clearSelection();
  {
    // The control shows or hides its scroll bar in several steps.
    stretching_ = true;
    const ScopeExit done([this] { stretching_ = false; });
    ListView_SetItemCountEx(list_, static_cast<int>(rows_->rowCount()), 0);
  }
  stretch();
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
  rowBeforeInput_.reset();
  // Only these rows: a change of all rows at once would visit every row.
  for (const int state : {LVNI_SELECTED, LVNI_FOCUSED}) {
    const int row = ListView_GetNextItem(list_, -1, static_cast<UINT>(state));
    if (row >= 0) ListView_SetItemState(list_, row, 0, LVIS_SELECTED | LVIS_FOCUSED);
  }
}

void ListView::showSortArrow(int column, bool ascending) {
  const HWND header = ListView_GetHeader(list_);
  for (int i = 0; i < columnCount(); ++i) {
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
  for (int i = 0; i < columnCount(); ++i) width += columnWidth(i);
  const int rowHeight = heightOfRow();
  RECT frame{0, 0, width, header.bottom - header.top + rows * rowHeight};
  AdjustWindowRectEx(&frame,
                     static_cast<DWORD>(GetWindowLongW(list_, GWL_STYLE)) & ~DWORD{WS_VSCROLL},
                     FALSE, static_cast<DWORD>(GetWindowLongW(list_, GWL_EXSTYLE)));
  return {frame.right - frame.left, frame.bottom - frame.top};
}

bool ListView::answer(NMHDR& header, LRESULT& result) const {
  if (header.hwndFrom != list_) return false;
  // Restoring a selection is not a choice of the user.
  if (restoring_ && header.code == LVN_ITEMCHANGED) return true;
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
  if (header.code == NM_CUSTOMDRAW) {
    result = colour(reinterpret_cast<NMLVCUSTOMDRAW&>(header));
    return true;
  }
  return false;
}

/// While the list has no focus, the control draws the selected row in the colours of buttons. With
/// high contrast these are the colours of the other rows.
LRESULT ListView::colour(NMLVCUSTOMDRAW& drawing) const {
  if (GetSysColor(COLOR_BTNFACE) != GetSysColor(COLOR_WINDOW)) return CDRF_DODEFAULT;
  if (drawing.nmcd.dwDrawStage == CDDS_PREPAINT) return CDRF_NOTIFYITEMDRAW;
  if (drawing.nmcd.dwDrawStage == CDDS_ITEMPREPAINT && selectedRow() == drawing.nmcd.dwItemSpec) {
    drawing.nmcd.uItemState &= ~static_cast<UINT>(CDIS_SELECTED);
    drawing.clrText = GetSysColor(COLOR_HIGHLIGHTTEXT);
    drawing.clrTextBk = GetSysColor(COLOR_HIGHLIGHT);
  }
  return CDRF_DODEFAULT;
}

std::optional<LRESULT> ListView::onMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK:
    case WM_RBUTTONDOWN:
    case WM_RBUTTONDBLCLK:
      if (!isBesideRows(lParam)) return keepSelection(message, wParam, lParam);
      SetFocus(list_);
      return 0;
    case WM_KEYDOWN:
      // Ctrl and the plus key of the number pad would show the hidden columns too.
      if (wParam == VK_ADD && GetKeyState(VK_CONTROL) < 0) return 0;
      return keepSelection(message, wParam, lParam);
    case WM_SIZE: {
      const LRESULT result = DefSubclassProc(list_, message, wParam, lParam);
      stretch();
      return result;
    }
    case WM_NOTIFY: {
      const auto& change = *reinterpret_cast<const NMHEADERW*>(lParam);
      if (change.hdr.hwndFrom != ListView_GetHeader(list_)) return std::nullopt;
      return onHeader(change);
    }
    default:
      return std::nullopt;
  }
}

/// The control itself deselects a row on some clicks and keys, Ctrl+Space for one.
LRESULT ListView::keepSelection(UINT message, WPARAM wParam, LPARAM lParam) {
  rowBeforeInput_ = selectedRow();
  const LRESULT result = DefSubclassProc(list_, message, wParam, lParam);
  if (rowBeforeInput_ && !selectedRow()) {
    restoring_ = true;
    const ScopeExit done([this] { restoring_ = false; });
    ListView_SetItemState(list_, static_cast<int>(*rowBeforeInput_), LVIS_SELECTED | LVIS_FOCUSED,
                          LVIS_SELECTED | LVIS_FOCUSED);
  }
  return result;
}

bool ListView::isBesideRows(LPARAM place) const {
  LVHITTESTINFO hit{};
  hit.pt = {static_cast<short>(LOWORD(place)), static_cast<short>(HIWORD(place))};
  return ListView_HitTest(list_, &hit) < 0;
}

/// Headers that are not Unicode send the A notifications, which differ in no member used here.
std::optional<LRESULT> ListView::onHeader(const NMHEADERW& change) {
  switch (change.hdr.code) {
    case HDN_BEGINTRACKA:
    case HDN_BEGINTRACKW:
    case HDN_DIVIDERDBLCLICKA:
    case HDN_DIVIDERDBLCLICKW:
      if (change.iItem < 0 || change.iItem >= columnCount()) return std::nullopt;
      if (!hiddenColumns_[static_cast<std::size_t>(change.iItem)]) return std::nullopt;
      return TRUE;
    case HDN_ITEMCHANGEDA:
    case HDN_ITEMCHANGEDW:
      if (change.iItem == stretchedColumn_ && !stretching_ && change.pitem &&
          (change.pitem->mask & HDI_WIDTH) != 0) {
        minStretchedWidth_ = change.pitem->cxy;
        slack_ = std::max(roomFor(stretchedColumn_) - minStretchedWidth_, 0);
      }
      return std::nullopt;
    default:
      return std::nullopt;
  }
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
