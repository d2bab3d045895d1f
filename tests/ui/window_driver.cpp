#include "ui/window_driver.h"

#include <commctrl.h>

#include <chrono>
#include <stdexcept>
#include <thread>

namespace tlpacscfg::test {
namespace {

struct Search {
  std::wstring title;
  HWND found = nullptr;
};

BOOL CALLBACK matchTitle(HWND window, LPARAM parameter) {
  auto& search = *reinterpret_cast<Search*>(parameter);
  DWORD process = 0;
  GetWindowThreadProcessId(window, &process);
  if (process != GetCurrentProcessId() || !IsWindowVisible(window)) return TRUE;
  if (textOf(window) != search.title) return TRUE;
  search.found = window;
  return FALSE;
}

HWND findWindow(const std::wstring& title) {
  Search search{title};
  EnumWindows(&matchTitle, reinterpret_cast<LPARAM>(&search));
  return search.found;
}

struct ChildSearch {
  int id;
  HWND found = nullptr;
};

BOOL CALLBACK matchId(HWND window, LPARAM parameter) {
  auto& search = *reinterpret_cast<ChildSearch*>(parameter);
  if (GetDlgCtrlID(window) != search.id) return TRUE;
  search.found = window;
  return FALSE;
}

void mouse(HWND window, POINT at, UINT down, UINT up) {
  const LPARAM place = MAKELPARAM(at.x, at.y);
  SendMessageW(window, down, MK_LBUTTON, place);
  SendMessageW(window, up, 0, place);
}

POINT middleOf(const RECT& place) {
  return {(place.left + place.right) / 2, (place.top + place.bottom) / 2};
}

RECT placeOfCell(HWND list, int row, int column) {
  RECT place{};
  place.top = column;
  place.left = LVIR_LABEL;
  SendMessageW(list, LVM_GETSUBITEMRECT, static_cast<WPARAM>(row),
               reinterpret_cast<LPARAM>(&place));
  return place;
}

HWND headerOf(HWND list) { return reinterpret_cast<HWND>(SendMessageW(list, LVM_GETHEADER, 0, 0)); }

POINT pointBelowRows(HWND list) {
  RECT client{};
  GetClientRect(list, &client);
  return {client.right / 2, client.bottom - 5};
}

BOOL CALLBACK addTooltips(HWND candidate, LPARAM parameter) {
  wchar_t name[64];
  GetClassNameW(candidate, name, 64);
  if (std::wstring_view(name) == TOOLTIPS_CLASSW) {
    reinterpret_cast<std::vector<HWND>*>(parameter)->push_back(candidate);
  }
  return TRUE;
}

}  // namespace

void waitUntil(const std::function<bool()>& condition, const std::string& what) {
  using Clock = std::chrono::steady_clock;
  const auto deadline = Clock::now() + std::chrono::seconds(60);
  while (!condition()) {
    if (Clock::now() > deadline) throw std::runtime_error("waited in vain: " + what);
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
}

HWND windowNamed(const std::wstring& title) {
  waitUntil([&] { return findWindow(title) != nullptr; },
            "window " + std::string(title.begin(), title.end()));
  return findWindow(title);
}

bool isShown(const std::wstring& title) { return findWindow(title) != nullptr; }

HWND controlOf(HWND window, int id) {
  ChildSearch search{id};
  EnumChildWindows(window, &matchId, reinterpret_cast<LPARAM>(&search));
  if (!search.found) throw std::runtime_error("no control " + std::to_string(id));
  return search.found;
}

std::wstring textOf(HWND control) {
  const LRESULT length = SendMessageW(control, WM_GETTEXTLENGTH, 0, 0);
  std::wstring text(static_cast<std::size_t>(length) + 1, L'\0');
  const LRESULT copied =
      SendMessageW(control, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()));
  text.resize(static_cast<std::size_t>(copied));
  return text;
}

std::vector<HWND> tooltipWindowsBeside(HWND window) {
  std::vector<HWND> found;
  EnumThreadWindows(GetWindowThreadProcessId(window, nullptr), &addTooltips,
                    reinterpret_cast<LPARAM>(&found));
  return found;
}

std::wstring tooltipOf(HWND control) {
  std::wstring text(1000, L'\0');
  TTTOOLINFOW tool{};
  tool.cbSize = TTTOOLINFOW_V1_SIZE;
  tool.hwnd = GetAncestor(control, GA_ROOT);
  tool.uId = reinterpret_cast<UINT_PTR>(control);
  tool.lpszText = text.data();
  // Each top-level window has one of its own.
  for (const HWND tooltips : tooltipWindowsBeside(control)) {
    SendMessageW(tooltips, TTM_GETTEXTW, text.size(), reinterpret_cast<LPARAM>(&tool));
    if (text.front() != L'\0') break;
  }
  return text.c_str();
}

void click(HWND window, int id) { SendMessageW(controlOf(window, id), BM_CLICK, 0, 0); }

void choose(HWND window, int comboId, int position) {
  const HWND combo = controlOf(window, comboId);
  SendMessageW(combo, CB_SETCURSEL, static_cast<WPARAM>(position), 0);
  SendMessageW(GetParent(combo), WM_COMMAND, MAKEWPARAM(comboId, CBN_SELCHANGE),
               reinterpret_cast<LPARAM>(combo));
}

void type(HWND window, int editId, const std::wstring& text) {
  SendMessageW(controlOf(window, editId), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text.c_str()));
}

HWND focusOf(HWND window) {
  GUITHREADINFO info{};
  info.cbSize = sizeof(info);
  GetGUIThreadInfo(GetWindowThreadProcessId(window, nullptr), &info);
  return info.hwndFocus ? info.hwndFocus : window;
}

void pressKey(HWND window, WORD virtualKey) {
  const HWND focus = focusOf(window);
  PostMessageW(focus, WM_KEYDOWN, virtualKey, 1);
  PostMessageW(focus, WM_KEYUP, virtualKey, static_cast<LPARAM>(0xC0000001));
}

void pressMnemonic(HWND window, wchar_t letter) {
  constexpr LPARAM kAltIsDown = 1 << 29;
  PostMessageW(focusOf(window), WM_SYSCHAR, letter, kAltIsDown | 1);
}

std::vector<std::wstring> entriesOf(HWND combo) {
  std::vector<std::wstring> entries;
  const LRESULT count = SendMessageW(combo, CB_GETCOUNT, 0, 0);
  for (LRESULT i = 0; i < count; ++i) {
    const auto index = static_cast<WPARAM>(i);
    std::wstring text(static_cast<std::size_t>(SendMessageW(combo, CB_GETLBTEXTLEN, index, 0)),
                      L'\0');
    SendMessageW(combo, CB_GETLBTEXT, index, reinterpret_cast<LPARAM>(text.data()));
    entries.push_back(text);
  }
  return entries;
}

namespace list_view {

int rowCount(HWND list) { return static_cast<int>(SendMessageW(list, LVM_GETITEMCOUNT, 0, 0)); }

int columnCount(HWND list) {
  return static_cast<int>(SendMessageW(headerOf(list), HDM_GETITEMCOUNT, 0, 0));
}

std::wstring cell(HWND list, int row, int column) {
  std::wstring text(20000, L'\0');
  LVITEMW item{};
  item.iSubItem = column;
  item.pszText = text.data();
  item.cchTextMax = static_cast<int>(text.size());
  const LRESULT length = SendMessageW(list, LVM_GETITEMTEXTW, static_cast<WPARAM>(row),
                                      reinterpret_cast<LPARAM>(&item));
  return std::wstring(item.pszText, static_cast<std::size_t>(length));
}

std::vector<std::wstring> column(HWND list, int index) {
  std::vector<std::wstring> texts;
  for (int row = 0; row < rowCount(list); ++row) texts.push_back(cell(list, row, index));
  return texts;
}

int selectedRow(HWND list) {
  return static_cast<int>(
      SendMessageW(list, LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_SELECTED));
}

void selectRow(HWND list, int row) {
  LVITEMW item{};
  item.stateMask = LVIS_SELECTED | LVIS_FOCUSED;
  item.state = LVIS_SELECTED | LVIS_FOCUSED;
  SendMessageW(list, LVM_SETITEMSTATE, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
}

int columnWidth(HWND list, int column) {
  return static_cast<int>(SendMessageW(list, LVM_GETCOLUMNWIDTH, static_cast<WPARAM>(column), 0));
}

std::wstring header(HWND list, int column) {
  std::wstring text(100, L'\0');
  LVCOLUMNW description{};
  description.mask = LVCF_TEXT;
  description.pszText = text.data();
  description.cchTextMax = static_cast<int>(text.size());
  SendMessageW(list, LVM_GETCOLUMNW, static_cast<WPARAM>(column),
               reinterpret_cast<LPARAM>(&description));
  return text.c_str();
}

void clickHeader(HWND list, int column) {
  const HWND bar = headerOf(list);
  RECT place{};
  SendMessageW(bar, HDM_GETITEMRECT, static_cast<WPARAM>(column), reinterpret_cast<LPARAM>(&place));
  mouse(bar, middleOf(place), WM_LBUTTONDOWN, WM_LBUTTONUP);
}

void clickRow(HWND list, int row, int column) {
  mouse(list, middleOf(placeOfCell(list, row, column)), WM_LBUTTONDOWN, WM_LBUTTONUP);
}

void doubleClickRow(HWND list, int row, int column) {
  const POINT at = middleOf(placeOfCell(list, row, column));
  mouse(list, at, WM_LBUTTONDOWN, WM_LBUTTONUP);
  mouse(list, at, WM_LBUTTONDBLCLK, WM_LBUTTONUP);
}

void clickBelowRows(HWND list) { mouse(list, pointBelowRows(list), WM_LBUTTONDOWN, WM_LBUTTONUP); }

void rightClickBelowRows(HWND list) {
  mouse(list, pointBelowRows(list), WM_RBUTTONDOWN, WM_RBUTTONUP);
}

void dragDivider(HWND list, int column, int pixels) {
  const HWND bar = headerOf(list);
  RECT place{};
  SendMessageW(bar, HDM_GETITEMRECT, static_cast<WPARAM>(column), reinterpret_cast<LPARAM>(&place));
  // The divider of a hidden column can be grabbed only at its right.
  const LONG offset = place.left == place.right ? 2 : -2;
  const POINT from{place.right + offset, (place.top + place.bottom) / 2};
  SendMessageW(bar, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(from.x, from.y));
  SendMessageW(bar, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(from.x + pixels, from.y));
  SendMessageW(bar, WM_LBUTTONUP, 0, MAKELPARAM(from.x + pixels, from.y));
}

}  // namespace list_view

}  // namespace tlpacscfg::test
