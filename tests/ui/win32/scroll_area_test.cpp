#include "ui/win32/scroll_area.h"

#include <gtest/gtest.h>

#include "support/handle_win.h"
#include "ui/layout.h"

namespace tlpacscfg::test {
namespace {

using Window = UniqueHandle<HWND, &DestroyWindow>;

class ScrollAreaTest : public ::testing::Test {
 protected:
  void create(int width, int height) {
    window_.reset(CreateWindowExW(0, L"STATIC", L"", WS_POPUP | WS_CAPTION, 0, 0, width, height,
                                  nullptr, nullptr, GetModuleHandleW(nullptr), nullptr));
    RECT client{};
    GetClientRect(window(), &client);
    corner_ = CreateWindowExW(0, L"STATIC", L"", WS_CHILD | WS_VISIBLE, client.right - 50,
                              client.bottom - 20, 50, 20, window(), nullptr,
                              GetModuleHandleW(nullptr), nullptr);
    area_.attach(window());
  }

  HWND window() const { return window_.get(); }
  bool has(LONG bar) const { return (GetWindowLongW(window(), GWL_STYLE) & bar) != 0; }
  int position(int bar) const { return GetScrollPos(window(), bar); }
  POINT corner() const {
    RECT place = placeOf(corner_);
    MapWindowPoints(nullptr, window(), reinterpret_cast<POINT*>(&place), 2);
    return {place.right, place.bottom};
  }
  SIZE room() const {
    RECT client{};
    GetClientRect(window(), &client);
    return {client.right, client.bottom};
  }

  Window window_;
  HWND corner_ = nullptr;
  win32::ScrollArea area_;
};

TEST_F(ScrollAreaTest, AWindowThatFitsKeepsItsSizeAndHasNoBars) {
  create(400, 300);
  const RECT place = placeOf(window());
  EXPECT_EQ(place.right - place.left, 400);
  EXPECT_EQ(place.bottom - place.top, 300);
  EXPECT_FALSE(has(WS_HSCROLL));
  EXPECT_FALSE(has(WS_VSCROLL));
  SendMessageW(window(), WM_VSCROLL, SB_BOTTOM, 0);
  area_.reveal(corner_);
  EXPECT_EQ(corner().y, room().cy);
}

TEST_F(ScrollAreaTest, ALargerOneIsReducedToTheScreenAndScrollsInBothDirections) {
  create(5000, 4000);
  RECT work{};
  SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0);
  EXPECT_TRUE(EqualRect(&work, std::make_unique<RECT>(placeOf(window())).get()));
  EXPECT_TRUE(has(WS_HSCROLL));
  EXPECT_TRUE(has(WS_VSCROLL));
  SendMessageW(window(), WM_HSCROLL, SB_RIGHT, 0);
  SendMessageW(window(), WM_VSCROLL, SB_BOTTOM, 0);
  EXPECT_EQ(corner().x, room().cx);
  EXPECT_EQ(corner().y, room().cy);
  SendMessageW(window(), WM_VSCROLL, SB_LINEDOWN, 0);
  EXPECT_EQ(corner().y, room().cy);
  SendMessageW(window(), WM_HSCROLL, SB_LEFT, 0);
  SendMessageW(window(), WM_VSCROLL, SB_TOP, 0);
  EXPECT_EQ(position(SB_HORZ), 0);
  EXPECT_EQ(position(SB_VERT), 0);
}

TEST_F(ScrollAreaTest, OneThatIsOnlyTooHighStaysWideEnoughForItsContents) {
  create(400, 4000);
  EXPECT_FALSE(has(WS_HSCROLL));
  EXPECT_TRUE(has(WS_VSCROLL));
  EXPECT_EQ(corner().x, room().cx);
}

TEST_F(ScrollAreaTest, PagesLinesAndTheWheelScroll) {
  create(400, 4000);
  const int page = static_cast<int>(room().cy);
  SendMessageW(window(), WM_VSCROLL, SB_PAGEDOWN, 0);
  EXPECT_EQ(position(SB_VERT), page);
  SendMessageW(window(), WM_VSCROLL, SB_PAGEUP, 0);
  EXPECT_EQ(position(SB_VERT), 0);
  SendMessageW(window(), WM_VSCROLL, SB_LINEDOWN, 0);
  const int line = position(SB_VERT);
  EXPECT_GT(line, 0);
  SendMessageW(window(), WM_MOUSEWHEEL, MAKEWPARAM(0, static_cast<WORD>(-WHEEL_DELTA)), 0);
  EXPECT_EQ(position(SB_VERT), 4 * line);
  SendMessageW(window(), WM_MOUSEWHEEL, MAKEWPARAM(0, WHEEL_DELTA), 0);
  EXPECT_EQ(position(SB_VERT), line);
}

TEST_F(ScrollAreaTest, RevealingScrollsNoFurtherThanNeeded) {
  create(5000, 4000);
  area_.reveal(corner_);
  EXPECT_EQ(corner().x, room().cx);
  EXPECT_EQ(corner().y, room().cy);
  SendMessageW(window(), WM_VSCROLL, SB_LINEUP, 0);
  const int before = position(SB_VERT);
  SetWindowPos(corner_, nullptr, 100, 100, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
  area_.reveal(corner_);
  EXPECT_EQ(position(SB_VERT), before);
}

}  // namespace
}  // namespace tlpacscfg::test
