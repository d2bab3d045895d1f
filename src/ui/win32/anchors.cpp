#include "ui/win32/anchors.h"

namespace tlpacscfg::win32 {
namespace {

SIZE clientSize(HWND window) {
  RECT client{};
  GetClientRect(window, &client);
  return {client.right, client.bottom};
}

RECT placeIn(HWND window, HWND control) {
  RECT place{};
  GetWindowRect(control, &place);
  MapWindowPoints(nullptr, window, reinterpret_cast<POINT*>(&place), 2);
  return place;
}

/// The rectangle around all controls that are seen.
RECT boundsOfControls(HWND window) {
  RECT bounds{};
  for (HWND control = GetWindow(window, GW_CHILD); control;
       control = GetWindow(control, GW_HWNDNEXT)) {
    if ((GetWindowLongW(control, GWL_STYLE) & WS_VISIBLE) == 0) continue;
    const RECT place = placeIn(window, control);
    UnionRect(&bounds, &bounds, &place);
  }
  return bounds;
}

}  // namespace

void Anchors::attach(HWND window) {
  window_ = window;
  // Not the window's size: a window that can be resized is never created larger than the screen.
  const RECT bounds = boundsOfControls(window);
  designed_ = {bounds.right + bounds.left, bounds.bottom + bounds.top};
  controls_.clear();
}

void Anchors::add(int controlId, unsigned edges) {
  const HWND control = GetDlgItem(window_, controlId);
  controls_.push_back({control, edges, placeIn(window_, control)});
}

void Anchors::apply() const {
  const SIZE now = clientSize(window_);
  const LONG wider = now.cx - designed_.cx;
  const LONG higher = now.cy - designed_.cy;
  HDWP moves = BeginDeferWindowPos(static_cast<int>(controls_.size()));
  for (const Anchored& anchored : controls_) {
    RECT place = anchored.place;
    if ((anchored.edges & kLeft) == 0) place.left += wider;
    if ((anchored.edges & kRight) != 0) place.right += wider;
    if ((anchored.edges & kTop) == 0) place.top += higher;
    if ((anchored.edges & kBottom) != 0) place.bottom += higher;
    moves = DeferWindowPos(moves, anchored.control, nullptr, place.left, place.top,
                           place.right - place.left, place.bottom - place.top,
                           SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOCOPYBITS);
  }
  EndDeferWindowPos(moves);
  RedrawWindow(window_, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
}

}  // namespace tlpacscfg::win32
