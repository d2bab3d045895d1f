#pragma once

#include <windows.h>

#include <string>

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

/// The size of a text on the screen.
inline SIZE textSize(HGDIOBJ font, const std::wstring& text) {
  const ScreenDc screen;
  const HGDIOBJ previous = SelectObject(screen.get(), font);
  SIZE size{};
  GetTextExtentPoint32W(screen.get(), text.c_str(), static_cast<int>(text.size()), &size);
  SelectObject(screen.get(), previous);
  return size;
}

}  // namespace tlpacscfg::win32
