#include "benchmarks/bare/list_view.h"

#include <commctrl.h>

#include <algorithm>
#include <numeric>

namespace tlpacscfg::bench::bare {
namespace {

constexpr int kColumnWidth = 120;
constexpr const wchar_t* kClass = L"TlBenchBareList";

std::string sortKey(const std::wstring& text) {
  std::array<char, 256> key{};
  const int bytes =
      LCMapStringEx(LOCALE_NAME_USER_DEFAULT, LCMAP_SORTKEY | NORM_IGNORECASE, text.data(),
                    static_cast<int>(text.size()), reinterpret_cast<LPWSTR>(key.data()),
                    static_cast<int>(key.size()), nullptr, nullptr, 0);
  return {key.data(), static_cast<std::size_t>(bytes)};
}

}  // namespace

ListView::ListView(SIZE size, const std::vector<Row>& rows) : rows_(rows) {
  WNDCLASSW windowClass{};
  windowClass.lpfnWndProc = &procedure;
  windowClass.hInstance = GetModuleHandleW(nullptr);
  windowClass.lpszClassName = kClass;
  RegisterClassW(&windowClass);
  window_.reset(CreateWindowExW(0, kClass, L"", WS_POPUP | WS_VISIBLE, 0, 0, size.cx, size.cy,
                                nullptr, nullptr, windowClass.hInstance, nullptr));
  SetWindowLongPtrW(window_.get(), GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  list_ = CreateWindowExW(0, WC_LISTVIEWW, L"",
                          WS_CHILD | WS_VISIBLE | LVS_REPORT | LVS_SINGLESEL | LVS_OWNERDATA, 0, 0,
                          size.cx, size.cy, window_.get(), nullptr, nullptr, nullptr);
  for (std::size_t i = 0; i < std::tuple_size_v<Row>; ++i) {
    LVCOLUMNW column{};
    column.mask = LVCF_WIDTH | LVCF_SUBITEM;
    column.cx = kColumnWidth;
    column.iSubItem = static_cast<int>(i);
    SendMessageW(list_, LVM_INSERTCOLUMNW, i, reinterpret_cast<LPARAM>(&column));
  }
}

LRESULT CALLBACK ListView::procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_NOTIFY && reinterpret_cast<NMHDR*>(lParam)->code == LVN_GETDISPINFOW) {
    const auto& self = *reinterpret_cast<ListView*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    LVITEMW& item = reinterpret_cast<NMLVDISPINFOW*>(lParam)->item;
    if ((item.mask & LVIF_TEXT) != 0) {
      const Row& row = self.rows_[self.order_[static_cast<std::size_t>(item.iItem)]];
      item.pszText = const_cast<wchar_t*>(row[static_cast<std::size_t>(item.iSubItem)].c_str());
    }
    return 0;
  }
  return DefWindowProcW(window, message, wParam, lParam);
}

void ListView::fill(std::size_t column, const std::wstring& selected) {
  std::vector<std::string> keys;
  keys.reserve(rows_.size());
  for (const Row& row : rows_) keys.push_back(sortKey(row[column]));
  order_.resize(rows_.size());
  std::iota(order_.begin(), order_.end(), 0);
  std::stable_sort(order_.begin(), order_.end(),
                   [&](std::size_t a, std::size_t b) { return keys[a] < keys[b]; });
  ListView_SetItemCountEx(list_, static_cast<int>(rows_.size()), 0);
  const auto found = std::find_if(order_.begin(), order_.end(),
                                  [&](std::size_t row) { return rows_[row][column] == selected; });
  const int index = found == order_.end() ? 0 : static_cast<int>(found - order_.begin());
  ListView_SetItemState(list_, index, LVIS_SELECTED | LVIS_FOCUSED, LVIS_SELECTED | LVIS_FOCUSED);
  ListView_EnsureVisible(list_, index, FALSE);
  InvalidateRect(list_, nullptr, TRUE);
  UpdateWindow(list_);
}

}  // namespace tlpacscfg::bench::bare
