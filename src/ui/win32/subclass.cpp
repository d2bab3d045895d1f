#include "ui/win32/subclass.h"

#include <commctrl.h>

#include <utility>

#include "ui/win32/dialog.h"

namespace tlpacscfg::win32 {

void Subclass::attach(HWND control, Handler handler) {
  detach();
  control_ = control;
  handler_ = std::move(handler);
  SetWindowSubclass(control_, &procedure, reinterpret_cast<UINT_PTR>(this),
                    reinterpret_cast<DWORD_PTR>(this));
}

void Subclass::detach() {
  if (control_) RemoveWindowSubclass(control_, &procedure, reinterpret_cast<UINT_PTR>(this));
  control_ = nullptr;
}

LRESULT CALLBACK Subclass::procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam,
                                     UINT_PTR, DWORD_PTR self) {
  auto& subclass = *reinterpret_cast<Subclass*>(self);
  if (message == WM_NCDESTROY) {
    subclass.detach();
    return DefSubclassProc(window, message, wParam, lParam);
  }
  try {
    if (const std::optional<LRESULT> answer = subclass.handler_(message, wParam, lParam)) {
      return *answer;
    }
  } catch (...) {
    reportCurrentException();
    return 0;
  }
  return DefSubclassProc(window, message, wParam, lParam);
}

}  // namespace tlpacscfg::win32
