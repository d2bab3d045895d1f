#pragma once

#include <windows.h>

#include <vector>

namespace tlpacscfg::win32 {

/// Keeps controls at their distance from the edges of a window that the user resizes.
class Anchors {
 public:
  enum Edges : unsigned { kLeft = 1, kTop = 2, kRight = 4, kBottom = 8 };

  /// The controls are where the template has them, with equal margins at opposite edges.
  void attach(HWND window);
  /// The client area that the controls need as they are.
  SIZE designedSize() const { return designed_; }
  /// A control anchored to opposite edges grows with the window.
  void add(int controlId, unsigned edges);
  void apply() const;

 private:
  struct Anchored {
    HWND control;
    unsigned edges;
    RECT place;
  };

  HWND window_ = nullptr;
  SIZE designed_{};
  std::vector<Anchored> controls_;
};

}  // namespace tlpacscfg::win32
