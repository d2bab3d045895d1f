#include <windows.h>
#include <commctrl.h>

#include <gtest/gtest.h>

#include <array>

#include "support/scope_exit.h"
#include "support/handle_win.h"
#include "ui/win32/list_view.h"
#include "ui/win32/subclass.h"
#include "ui/window_driver.h"

namespace tlpacscfg::test {
namespace {

class NumberedRows : public ListRows {
 public:
  std::size_t rowCount() const override { return count; }
  std::wstring_view cell(std::size_t row, std::size_t) const override {
    return kNames[row % kNames.size()];
  }

  std::size_t count = 3;

 private:
  static constexpr std::array<std::wstring_view, 3> kNames = {L"a", L"b", L"c"};
};

/// The list view on its own, in a window that records what the list reports.
class ListViewTest : public testing::Test {
 protected:
  ListViewTest() {
    const INITCOMMONCONTROLSEX classes{sizeof(classes), ICC_LISTVIEW_CLASSES};
    InitCommonControlsEx(&classes);
    window_ = Window(CreateWindowExW(0, L"STATIC", L"", WS_POPUP | WS_VISIBLE, 0, 0, 400, 300,
                                     nullptr, nullptr, nullptr, nullptr));
    control_ = CreateWindowExW(
        0, WC_LISTVIEWW, L"",
        WS_CHILD | WS_VISIBLE | LVS_REPORT | LVS_SINGLESEL | LVS_OWNERDATA | LVS_SHOWSELALWAYS, 0,
        0, 400, 200, window_.get(), nullptr, nullptr, nullptr);
    reports_.attach(window_.get(), [this](UINT message, WPARAM, LPARAM lParam) {
      std::optional<LRESULT> answer;
      if (message == WM_NOTIFY) answer = record(*reinterpret_cast<NMHDR*>(lParam));
      return answer;
    });
    // Imitates Windows' list view: others need not deselect on Ctrl+Space.
    windowsKeys_.attach(control_, [this](UINT message, WPARAM key, LPARAM) {
      std::optional<LRESULT> answer;
      if (message != WM_KEYDOWN) return answer;
      ++keysReceived_;
      if (key == VK_SPACE && GetKeyState(VK_CONTROL) < 0) {
        deselect(-1);
        answer = 0;
      }
      return answer;
    });
    list_.attach(control_, rows_, 1);
    list_.addColumn(L"Number", 0);
    list_.addColumn(L"Name", 100);
    list_.addColumn(L"Rest", 200);
    list_.addColumn(L"Identifier", 0);
    list_.refill();
    list_.select(1);
    selections_.clear();
  }

  LRESULT record(NMHDR& header) {
    LRESULT result = 0;
    if (list_.answer(header, result)) return result;
    if (header.code == LVN_ITEMCHANGED) {
      const auto& change = reinterpret_cast<const NMLISTVIEW&>(header);
      const bool selected = (change.uNewState & ~change.uOldState & LVIS_SELECTED) != 0;
      if (selected) selections_.push_back(change.iItem);
    }
    if (header.code == NM_CLICK && clearsOnClick_) list_.clearSelection();
    return 0;
  }

  void deselect(int row) const { ListView_SetItemState(control_, row, 0, LVIS_SELECTED); }

  bool isFocused(int row) const {
    return (ListView_GetItemState(control_, row, LVIS_FOCUSED) & LVIS_FOCUSED) != 0;
  }

  void click(UINT down, UINT up, POINT at) const {
    const LPARAM place = MAKELPARAM(at.x, at.y);
    SendMessageW(control_, down, 0, place);
    SendMessageW(control_, up, 0, place);
  }

  void clickBesideRows(UINT down, UINT up) const {
    for (const POINT at : {POINT{50, 180}, POINT{390, 30}, POINT{390, 180}}) {
      click(down, up, at);
      EXPECT_EQ(list_view::selectedRow(control_), 1) << down << " at " << at.x;
      EXPECT_TRUE(isFocused(1));
    }
    EXPECT_TRUE(selections_.empty());
  }

  void pressWithCtrl(WPARAM key) const {
    std::array<BYTE, 256> before{};
    GetKeyboardState(before.data());
    const ScopeExit restore([&] { SetKeyboardState(before.data()); });
    std::array<BYTE, 256> down = before;
    down[VK_CONTROL] = 0x80;
    SetKeyboardState(down.data());
    SendMessageW(control_, WM_KEYDOWN, key, 1);
  }

  HWND header() const { return ListView_GetHeader(control_); }

  /// Sends the header's notification before a divider is dragged or double-clicked.
  bool isRefused(UINT code, int column) const {
    HDITEMW item{};
    item.mask = HDI_WIDTH;
    NMHEADERW notification{};
    notification.hdr = {header(), 0, code};
    notification.iItem = column;
    notification.pitem = &item;
    return SendMessageW(control_, WM_NOTIFY, 0, reinterpret_cast<LPARAM>(&notification)) != 0;
  }

  void dragDivider(int from, int to) const {
    SendMessageW(header(), WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(from, 5));
    SendMessageW(header(), WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(to, 5));
    SendMessageW(header(), WM_LBUTTONUP, 0, MAKELPARAM(to, 5));
  }

  void resize(int width) const {
    SetWindowPos(control_, nullptr, 0, 0, width, 200, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
  }

  int clientWidth() const {
    RECT client{};
    GetClientRect(control_, &client);
    return static_cast<int>(client.right);
  }

  using Window = UniqueHandle<HWND, &DestroyWindow>;

  NumberedRows rows_;
  win32::ListView list_;
  win32::Subclass reports_;
  win32::Subclass windowsKeys_;
  Window window_;
  HWND control_ = nullptr;
  std::vector<int> selections_;
  int keysReceived_ = 0;
  bool clearsOnClick_ = false;
};

TEST_F(ListViewTest, AClickBesideTheRowsKeepsTheRowSelectedAndFocused) {
  for (const UINT down : {WM_LBUTTONDOWN, WM_LBUTTONDBLCLK}) clickBesideRows(down, WM_LBUTTONUP);
}

TEST_F(ListViewTest, ARightClickBesideTheRowsKeepsTheRowSelectedAndFocused) {
  for (const UINT down : {WM_RBUTTONDOWN, WM_RBUTTONDBLCLK}) clickBesideRows(down, WM_RBUTTONUP);
}

TEST_F(ListViewTest, AClickBesideTheRowsGivesTheListTheFocus) {
  SetFocus(window_.get());
  click(WM_LBUTTONDOWN, WM_LBUTTONUP, {50, 180});
  EXPECT_EQ(GetFocus(), control_);
}

TEST_F(ListViewTest, CtrlSpaceKeepsTheRowSelectedAndReportsNoChoice) {
  pressWithCtrl(VK_SPACE);
  EXPECT_EQ(keysReceived_, 1);
  EXPECT_EQ(list_view::selectedRow(control_), 1);
  EXPECT_TRUE(isFocused(1));
  EXPECT_TRUE(selections_.empty());
}

TEST_F(ListViewTest, AClickOnAnotherRowSelectsIt) {
  list_view::clickRow(control_, 2, 1);
  EXPECT_EQ(list_.selectedRow(), 2U);
  EXPECT_EQ(selections_, std::vector<int>{2});
  EXPECT_EQ(list_.rowBeforeInput(), 1U);
}

TEST_F(ListViewTest, TheProgramMayClearTheSelection) {
  list_.clearSelection();
  EXPECT_EQ(list_.selectedRow(), std::nullopt);
  click(WM_LBUTTONDOWN, WM_LBUTTONUP, {50, 180});
  EXPECT_EQ(list_.selectedRow(), std::nullopt);
  list_.select(0);
  deselect(0);
  EXPECT_EQ(list_.selectedRow(), std::nullopt);
}

TEST_F(ListViewTest, WhatTheProgramClearsDuringAClickStaysCleared) {
  clearsOnClick_ = true;
  list_view::clickRow(control_, 1, 1);
  EXPECT_EQ(list_.selectedRow(), std::nullopt);
  EXPECT_EQ(list_.rowBeforeInput(), std::nullopt);
}

TEST_F(ListViewTest, HiddenColumnsCannotBeOpened) {
  for (const UINT code :
       {HDN_BEGINTRACKA, HDN_BEGINTRACKW, HDN_DIVIDERDBLCLICKA, HDN_DIVIDERDBLCLICKW}) {
    EXPECT_TRUE(isRefused(code, 0));
    EXPECT_TRUE(isRefused(code, 3));
    EXPECT_FALSE(isRefused(code, 1));
  }
  dragDivider(2, 80);
  EXPECT_EQ(list_.columnWidth(0), 0);
  dragDivider(302, 350);
  EXPECT_EQ(list_.columnWidth(3), 0);
  SendMessageW(header(), WM_LBUTTONDBLCLK, MK_LBUTTON, MAKELPARAM(302, 5));
  EXPECT_EQ(list_.columnWidth(3), 0);
}

TEST_F(ListViewTest, TheKeyThatSizesAllColumnsIsIgnored) {
  pressWithCtrl(VK_ADD);
  EXPECT_EQ(keysReceived_, 0);
  EXPECT_EQ(list_.columnWidth(0), 0);
}

TEST_F(ListViewTest, AColumnThatTheUserClosedCanBeOpenedAgain) {
  dragDivider(98, -10);
  ASSERT_EQ(list_.columnWidth(1), 0);
  EXPECT_FALSE(isRefused(HDN_BEGINTRACKW, 1));
}

TEST_F(ListViewTest, AStretchedColumnFillsTheListWithAndWithoutAScrollBar) {
  list_.setColumnWidth(2, clientWidth() - 100);
  list_.stretchColumn(2, 0);
  const int without = clientWidth();
  for (const std::size_t count : {std::size_t{100}, std::size_t{3}, std::size_t{0}}) {
    rows_.count = count;
    list_.refill();
    EXPECT_EQ(list_.columnWidth(2), clientWidth() - 100) << count << " rows";
    EXPECT_EQ(clientWidth() < without, count == 100);
    EXPECT_EQ(GetWindowLongW(control_, GWL_STYLE) & WS_HSCROLL, 0) << count << " rows";
  }
}

TEST_F(ListViewTest, AStretchedColumnTakesTheRoomOfARemovedScrollBar) {
  list_.setColumnWidth(2, clientWidth() - 100);
  list_.stretchColumn(2, 0);
  const std::size_t page = static_cast<std::size_t>(ListView_GetCountPerPage(control_));
  rows_.count = page + 1;
  list_.refill();
  list_.select(page);
  rows_.count = page;
  list_.refill();
  EXPECT_EQ(list_.columnWidth(2), clientWidth() - 100);
}

TEST_F(ListViewTest, AStretchedColumnGrowsAndShrinksButNotBelowItsMinimumWidth) {
  list_.setColumnWidth(2, clientWidth() - 100);
  const int least = list_.columnWidth(2);
  list_.stretchColumn(2, least);
  resize(460);
  EXPECT_EQ(list_.columnWidth(2), least + 60);
  resize(300);
  EXPECT_EQ(list_.columnWidth(2), least);
  resize(400);
  EXPECT_EQ(list_.columnWidth(2), least);
}

TEST_F(ListViewTest, TheUsersColumnWidthsSurviveAResize) {
  list_.stretchColumn(2, 200);
  dragDivider(98, 128);
  dragDivider(328, 368);
  ASSERT_EQ(list_.columnWidth(1), 130);
  ASSERT_EQ(list_.columnWidth(2), 240);
  resize(300);
  EXPECT_EQ(list_.columnWidth(1), 130);
  EXPECT_EQ(list_.columnWidth(2), 240);
  resize(500);
  EXPECT_EQ(list_.columnWidth(1), 130);
  EXPECT_EQ(list_.columnWidth(2), 340);
  resize(400);
  EXPECT_EQ(list_.columnWidth(2), 240);
}

/// The colours of the system, of which some are replaced until the end of the test.
class SystemColours {
 public:
  SystemColours() {
    for (std::size_t i = 0; i < kPlaces.size(); ++i) before_[i] = GetSysColor(kPlaces[i]);
  }
  ~SystemColours() { set(before_); }
  SystemColours(const SystemColours&) = delete;
  SystemColours& operator=(const SystemColours&) = delete;

  static constexpr std::array<int, 4> kPlaces = {COLOR_WINDOW, COLOR_BTNFACE, COLOR_HIGHLIGHT,
                                                 COLOR_HIGHLIGHTTEXT};
  static void set(const std::array<COLORREF, 4>& colours) {
    SetSysColors(static_cast<int>(kPlaces.size()), kPlaces.data(), colours.data());
  }

 private:
  std::array<COLORREF, 4> before_{};
};

TEST_F(ListViewTest, TheSelectedRowIsSeenInHighContrastToo) {
  constexpr COLORREF kBlack = RGB(0, 0, 0);
  constexpr COLORREF kBright = RGB(26, 235, 255);
  const SystemColours colours;
  colours.set({kBlack, kBlack, kBright, kBlack});
  SendMessageW(control_, WM_SYSCOLORCHANGE, 0, 0);
  ListView_SetBkColor(control_, kBlack);
  ListView_SetTextBkColor(control_, kBlack);
  list_.select(1);
  SetFocus(nullptr);
  const auto colourOfRow = [this](int row) {
    RECT place{};
    ListView_GetItemRect(control_, row, &place, LVIR_BOUNDS);
    RedrawWindow(control_, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_UPDATENOW);
    const HDC dc = GetDC(control_);
    const COLORREF colour = GetPixel(dc, place.right - 10, (place.top + place.bottom) / 2);
    ReleaseDC(control_, dc);
    return colour;
  };
  EXPECT_EQ(colourOfRow(0), kBlack);
  EXPECT_EQ(colourOfRow(1), kBright);
}

}  // namespace
}  // namespace tlpacscfg::test
