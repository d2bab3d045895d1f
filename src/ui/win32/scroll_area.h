#pragma once

#include <windows.h>

#include "ui/win32/subclass.h"

namespace tlpacscfg::win32 {

/// Makes a window fit the screen: one that is larger than the work area is reduced to it and gets
/// scroll bars.
class ScrollArea {
 public:
  /// The contents are what the client area shows now.
  void attach(HWND window);
  /// Scrolls as far as needed to show a control of the window.
  void reveal(HWND control) const;

 private:
  std::optional<LRESULT> onMessage(UINT message, WPARAM wParam) const;
  void fit() const;
  void updateBars() const;
  void updateBar(int bar) const;
  void scroll(int bar, int request) const;
  void scrollTo(int bar, int position) const;
  void moveControls(int right, int down) const;

  HWND window_ = nullptr;
  SIZE contents_{};
  Subclass messages_;
};

}  // namespace tlpacscfg::win32
