#include "ui/win32/dialog.h"

#include "support/module_win.h"
#include "support/runtime_error.h"
#include "support/system.h"
#include "support/text.h"
#include "ui/win32/creation_scope.h"
#include "ui/win32/module.h"

namespace tlpacscfg::win32 {
namespace {

void registerCommonControls() {
  const INITCOMMONCONTROLSEX controls{sizeof(controls),
                                      ICC_LISTVIEW_CLASSES | ICC_TAB_CLASSES | ICC_WIN95_CLASSES};
  InitCommonControlsEx(&controls);
}

}  // namespace

Dialog::~Dialog() { destroy(); }

void Dialog::create(int templateId, HWND parent) {
  const CreationScope scope;
  registerCommonControls();
  CreateDialogParamW(moduleInstance(), MAKEINTRESOURCEW(templateId), parent, &Dialog::procedure,
                     reinterpret_cast<LPARAM>(this));
  if (!window_) raise(ErrorNumber::CannotCreateObject);
}

void Dialog::destroy() {
  if (window_) DestroyWindow(window_);
}

void Dialog::onCommand(int controlId, int) {
  if (controlId == IDCANCEL) onClose();
}

INT_PTR CALLBACK Dialog::procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_INITDIALOG) {
    SetWindowLongPtrW(window, DWLP_USER, lParam);
    reinterpret_cast<Dialog*>(lParam)->window_ = window;
  }
  auto* const self = reinterpret_cast<Dialog*>(GetWindowLongPtrW(window, DWLP_USER));
  if (!self) return FALSE;
  try {
    const ThemeScope theme;
    return self->dispatch(message, wParam, lParam);
  } catch (...) {
    reportCurrentException();
    return TRUE;
  }
}

INT_PTR Dialog::dispatch(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_INITDIALOG:
      onInit();
      return TRUE;
    case WM_COMMAND:
      onCommand(LOWORD(wParam), HIWORD(wParam));
      return TRUE;
    case WM_NOTIFY:
      SetWindowLongPtrW(window_, DWLP_MSGRESULT, onNotify(*reinterpret_cast<NMHDR*>(lParam)));
      return TRUE;
    case WM_TIMER:
      onTimer(wParam);
      return TRUE;
    case WM_SIZE:
      if (wParam != SIZE_MINIMIZED) onSize(LOWORD(lParam), HIWORD(lParam));
      return FALSE;
    case WM_GETMINMAXINFO:
      onMinMaxInfo(*reinterpret_cast<MINMAXINFO*>(lParam));
      return TRUE;
    case WM_CLOSE:
      onClose();
      return TRUE;
    case WM_NCDESTROY:
      SetWindowLongPtrW(window_, DWLP_USER, 0);
      window_ = nullptr;
      onDestroyed();
      return FALSE;
    default:
      return onMessage(message, wParam, lParam).value_or(FALSE);
  }
}

void reportCurrentException() noexcept {
  try {
    system::reportRunTimeError(describeCurrent());
  } catch (...) {
    // The report failed too; there is no other.
  }
}

std::wstring windowText(HWND window) {
  std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(window)) + 1, L'\0');
  const int length = GetWindowTextW(window, text.data(), static_cast<int>(text.size()));
  text.resize(static_cast<std::size_t>(length));
  return text;
}

}  // namespace tlpacscfg::win32
