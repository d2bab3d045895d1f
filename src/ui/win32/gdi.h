#pragma once

#include <windows.h>

namespace tlpacscfg::win32 {

/// The device context of the whole screen.
class ScreenDc {
 public:
  ScreenDc() : dc_(GetDC(nullptr)) {}
  ~ScreenDc() { ReleaseDC(nullptr, dc_); }
  ScreenDc(const ScreenDc&) = delete;
  ScreenDc& operator=(const ScreenDc&) = delete;

  HDC get() const { return dc_; }

 private:
  HDC dc_;
};

}  // namespace tlpacscfg::win32
