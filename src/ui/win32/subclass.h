#pragma once

#include <windows.h>

#include <functional>
#include <optional>

namespace tlpacscfg::win32 {

/// Receives the messages of one control before the control, until either is destroyed.
class Subclass {
 public:
  /// A result replaces the control's own handling. Exceptions end in the default report.
  using Handler = std::function<std::optional<LRESULT>(UINT message, WPARAM wParam, LPARAM lParam)>;

  Subclass() = default;
  ~Subclass() { detach(); }
  Subclass(const Subclass&) = delete;
  Subclass& operator=(const Subclass&) = delete;

  void attach(HWND control, Handler handler);
  void detach();

 private:
  static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam,
                                    UINT_PTR id, DWORD_PTR self);

  HWND control_ = nullptr;
  Handler handler_;
};

}  // namespace tlpacscfg::win32
