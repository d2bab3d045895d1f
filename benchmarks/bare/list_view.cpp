#include "benchmarks/bare/list_view.h"

#include <commctrl.h>

namespace tlpacscfg::bench::bare {
namespace {

constexpr int kColumnWidth = 120;

wchar_t* mutableText(const std::wstring& text) { return const_cast<wchar_t*>(text.c_str()); }

}  // namespace

ListView::ListView(SIZE size)
    : window_(CreateWindowExW(0, L"STATIC", L"", WS_POPUP | WS_VISIBLE, 0, 0, size.cx, size.cy,
                              nullptr, nullptr, nullptr, nullptr)),
      list_(CreateWindowExW(0, WC_LISTVIEWW, L"",
                            WS_CHILD | WS_VISIBLE | LVS_REPORT | LVS_SINGLESEL, 0, 0, size.cx,
                            size.cy, window_.get(), nullptr, nullptr, nullptr)) {
  for (std::size_t i = 0; i < std::tuple_size_v<Row>; ++i) {
    LVCOLUMNW column{};
    column.mask = LVCF_WIDTH | LVCF_SUBITEM;
    column.cx = kColumnWidth;
    column.iSubItem = static_cast<int>(i);
    SendMessageW(list_, LVM_INSERTCOLUMNW, i, reinterpret_cast<LPARAM>(&column));
  }
}

void ListView::clear() { ListView_DeleteAllItems(list_); }

void ListView::fill(const std::vector<Row>& rows) {
  SendMessageW(list_, WM_SETREDRAW, FALSE, 0);
  // For a list that keeps its texts the count is an announcement that saves reallocation.
  ListView_SetItemCount(list_, static_cast<int>(rows.size()));
  LVITEMW item{};
  item.mask = LVIF_TEXT;
  for (std::size_t row = 0; row < rows.size(); ++row) {
    item.iItem = static_cast<int>(row);
    item.iSubItem = 0;
    item.pszText = mutableText(rows[row][0]);
    SendMessageW(list_, LVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&item));
    for (std::size_t column = 1; column < rows[row].size(); ++column) {
      item.iSubItem = static_cast<int>(column);
      item.pszText = mutableText(rows[row][column]);
      SendMessageW(list_, LVM_SETITEMTEXTW, row, reinterpret_cast<LPARAM>(&item));
    }
  }
  SendMessageW(list_, WM_SETREDRAW, TRUE, 0);
  InvalidateRect(list_, nullptr, TRUE);
  UpdateWindow(list_);
}

}  // namespace tlpacscfg::bench::bare
