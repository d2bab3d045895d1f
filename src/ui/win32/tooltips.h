#pragma once

#include <windows.h>

#include <string>

#include "support/handle_win.h"
#include "ui/win32/subclass.h"

namespace tlpacscfg::win32 {

/// The tooltips of one window's controls. They have no owner: a window that owns others cannot be
/// put among the topmost ones everywhere.
class Tooltips {
 public:
  void attach(HWND window);

  /// Sets or changes the tooltip of a control; long texts break into lines.
  void set(HWND control, const std::wstring& text);

 private:
  HWND window_ = nullptr;
  UniqueHandle<HWND, &DestroyWindow> tooltip_;
  Subclass end_;
};

}  // namespace tlpacscfg::win32
