#include "ui/win32/anchors.h"

namespace tlpacscfg::win32 {
namespace {

SIZE clientSize(HWND window) {
  RECT client{};
  GetClientRect(window, &client);
  return {client.right, client.bottom};
}

}  // namespace

void Anchors::attach(HWND window) {
  window_ = window;
  designed_ = clientSize(window);
  controls_.clear();
}

void Anchors::add(int controlId, unsigned edges) {
  const HWND control = GetDlgItem(window_, controlId);
  RECT place{};
  GetWindowRect(control, &place);
  MapWindowPoints(nullptr, window_, reinterpret_cast<POINT*>(&place), 2);
  controls_.push_back({control, edges, place});
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
