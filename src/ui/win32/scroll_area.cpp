#include "ui/win32/scroll_area.h"

#include <algorithm>

namespace tlpacscfg::win32 {
namespace {

SIZE sizeOf(const RECT& place) { return {place.right - place.left, place.bottom - place.top}; }

RECT workAreaOf(HWND window) {
  MONITORINFO monitor{};
  monitor.cbSize = sizeof(monitor);
  GetMonitorInfoW(MonitorFromWindow(window, MONITOR_DEFAULTTONEAREST), &monitor);
  return monitor.rcWork;
}

SCROLLINFO barOf(HWND window, int bar) {
  SCROLLINFO state{};
  state.cbSize = sizeof(state);
  state.fMask = SIF_ALL;
  GetScrollInfo(window, bar, &state);
  return state;
}

int lineOf(const SCROLLINFO& state) { return static_cast<int>(state.nPage) / 20; }

int maxPosition(const SCROLLINFO& state) {
  return std::max(state.nMax - static_cast<int>(state.nPage) + 1, 0);
}

}  // namespace

void ScrollArea::attach(HWND window) {
  window_ = window;
  RECT client{};
  GetClientRect(window_, &client);
  contents_ = sizeOf(client);
  messages_.attach(
      window_, [this](UINT message, WPARAM wParam, LPARAM) { return onMessage(message, wParam); });
  fit();
  updateBars();
}

void ScrollArea::fit() const {
  const RECT work = workAreaOf(window_);
  const SIZE room = sizeOf(work);
  RECT frame{};
  GetWindowRect(window_, &frame);
  const SIZE whole = sizeOf(frame);
  if (whole.cx <= room.cx && whole.cy <= room.cy) return;
  // A scroll bar takes room from the other direction.
  const int barWidth = whole.cy > room.cy ? GetSystemMetrics(SM_CXVSCROLL) : 0;
  const int barHeight = whole.cx > room.cx ? GetSystemMetrics(SM_CYHSCROLL) : 0;
  const LONG width = std::min(whole.cx + barWidth, room.cx);
  const LONG height = std::min(whole.cy + barHeight, room.cy);
  SetWindowPos(window_, nullptr, work.left + (room.cx - width) / 2,
               work.top + (room.cy - height) / 2, width, height, SWP_NOZORDER | SWP_NOACTIVATE);
}

std::optional<LRESULT> ScrollArea::onMessage(UINT message, WPARAM wParam) const {
  switch (message) {
    case WM_SIZE:
      updateBars();
      return std::nullopt;
    case WM_HSCROLL:
      scroll(SB_HORZ, LOWORD(wParam));
      return 0;
    case WM_VSCROLL:
      scroll(SB_VERT, LOWORD(wParam));
      return 0;
    case WM_MOUSEWHEEL: {
      constexpr int kLinesOfNotch = 3;
      const SCROLLINFO state = barOf(window_, SB_VERT);
      const int notches = kLinesOfNotch * lineOf(state) * GET_WHEEL_DELTA_WPARAM(wParam);
      scrollTo(SB_VERT, state.nPos - notches / WHEEL_DELTA);
      return 0;
    }
    default:
      return std::nullopt;
  }
}

/// The system shows a bar only while the contents are larger than the window.
void ScrollArea::updateBars() const {
  updateBar(SB_HORZ);
  updateBar(SB_VERT);
}

void ScrollArea::updateBar(int bar) const {
  RECT client{};
  GetClientRect(window_, &client);
  SCROLLINFO state{};
  state.cbSize = sizeof(state);
  state.fMask = SIF_RANGE | SIF_PAGE;
  state.nMax = static_cast<int>(bar == SB_HORZ ? contents_.cx : contents_.cy) - 1;
  state.nPage = static_cast<UINT>(bar == SB_HORZ ? client.right : client.bottom);
  SetScrollInfo(window_, bar, &state, TRUE);
}

void ScrollArea::scroll(int bar, int request) const {
  const SCROLLINFO state = barOf(window_, bar);
  const int page = static_cast<int>(state.nPage);
  const int line = lineOf(state);
  switch (request) {
    case SB_LINEUP:
      return scrollTo(bar, state.nPos - line);
    case SB_LINEDOWN:
      return scrollTo(bar, state.nPos + line);
    case SB_PAGEUP:
      return scrollTo(bar, state.nPos - page);
    case SB_PAGEDOWN:
      return scrollTo(bar, state.nPos + page);
    case SB_TOP:
      return scrollTo(bar, 0);
    case SB_BOTTOM:
      return scrollTo(bar, state.nMax);
    case SB_THUMBTRACK:
    case SB_THUMBPOSITION:
      return scrollTo(bar, state.nTrackPos);
    default:
      return;
  }
}

void ScrollArea::scrollTo(int bar, int position) const {
  SCROLLINFO state = barOf(window_, bar);
  const int before = state.nPos;
  state.fMask = SIF_POS;
  state.nPos = std::clamp(position, 0, maxPosition(state));
  if (state.nPos == before) return;
  SetScrollInfo(window_, bar, &state, TRUE);
  const int moved = before - state.nPos;
  moveControls(bar == SB_HORZ ? moved : 0, bar == SB_VERT ? moved : 0);
}

/// Also while the window is hidden.
void ScrollArea::moveControls(int right, int down) const {
  for (HWND control = GetWindow(window_, GW_CHILD); control;
       control = GetWindow(control, GW_HWNDNEXT)) {
    RECT place{};
    GetWindowRect(control, &place);
    MapWindowPoints(nullptr, window_, reinterpret_cast<POINT*>(&place), 2);
    SetWindowPos(control, nullptr, place.left + right, place.top + down, 0, 0,
                 SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOCOPYBITS);
  }
  RedrawWindow(window_, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
}

void ScrollArea::reveal(HWND control) const {
  if (control == window_ || !IsChild(window_, control)) return;
  RECT place{};
  GetWindowRect(control, &place);
  MapWindowPoints(nullptr, window_, reinterpret_cast<POINT*>(&place), 2);
  const auto show = [this](int bar, int begin, int end) {
    const SCROLLINFO state = barOf(window_, bar);
    const int room = static_cast<int>(state.nPage);
    if (end > room) scrollTo(bar, state.nPos + std::min(begin, end - room));
    if (begin < 0) scrollTo(bar, state.nPos + begin);
  };
  show(SB_HORZ, place.left, place.right);
  show(SB_VERT, place.top, place.bottom);
}

}  // namespace tlpacscfg::win32
