#pragma once

#include <windows.h>
#include <commctrl.h>

#include <optional>
#include <string>

namespace tlpacscfg::win32 {

/// A modeless dialog, or a page inside one, made from a template. Messages call named handlers;
/// exceptions of a handler end in the default error report.
class Dialog {
 public:
  Dialog() = default;
  virtual ~Dialog();
  Dialog(const Dialog&) = delete;
  Dialog& operator=(const Dialog&) = delete;

  HWND window() const { return window_; }
  bool isCreated() const { return window_ != nullptr; }
  bool isVisible() const { return window_ && IsWindowVisible(window_); }

  /// Creates the window, hidden unless the template says otherwise. `parent` owns a top-level
  /// dialog and holds a page; it may be null.
  void create(int templateId, HWND parent);
  void destroy();

  HWND item(int controlId) const { return GetDlgItem(window_, controlId); }
  void setText(int controlId, const std::wstring& text) const {
    SetDlgItemTextW(window_, controlId, text.c_str());
  }
  void enable(int controlId, bool enabled) const { EnableWindow(item(controlId), enabled); }

 protected:
  virtual void onInit() {}
  /// A control's notification: `code` is BN_CLICKED, CBN_SELCHANGE and so on.
  virtual void onCommand(int controlId, int code);
  /// The result is returned to the control.
  virtual LRESULT onNotify(NMHDR& /*header*/) { return 0; }
  virtual void onTimer(UINT_PTR /*timerId*/) {}
  virtual void onSize(int /*clientWidth*/, int /*clientHeight*/) {}
  virtual void onMinMaxInfo(MINMAXINFO& /*info*/) {}
  /// The close box, Alt+F4, or Esc where the template has no Cancel button.
  virtual void onClose() {}
  virtual void onDestroyed() {}
  /// Any other message; a result replaces the default procedure.
  virtual std::optional<INT_PTR> onMessage(UINT /*message*/, WPARAM /*wParam*/, LPARAM /*lParam*/) {
    return std::nullopt;
  }

 private:
  static INT_PTR CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  INT_PTR dispatch(UINT message, WPARAM wParam, LPARAM lParam);

  HWND window_ = nullptr;
};

/// Shows the default report of the exception being handled. Never throws: every callback of the
/// system ends here.
void reportCurrentException() noexcept;

/// The text of any window.
std::wstring windowText(HWND window);

}  // namespace tlpacscfg::win32
