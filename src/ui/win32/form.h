#pragma once

#include <string_view>

#include "ui/win32/dialog.h"

namespace tlpacscfg::win32 {

/// A named top-level dialog. It counts as loaded from creation to destruction. Tab, Enter, Esc and
/// mnemonics work with any message loop of the host.
class Form : public Dialog {
 public:
  explicit Form(std::wstring_view name) : name_(name) {}
  ~Form() override { destroy(); }

  std::wstring_view name() const { return name_; }

  void load(int templateId, HWND owner);

  /// A key for a control of the form, before the dialog keys; true if it was handled.
  virtual bool onKey(const MSG& /*message*/) { return false; }
  /// After a key that may have moved the focus.
  virtual void onKeyHandled() {}

 protected:
  void onDestroyed() override;

 private:
  std::wstring_view name_;
};

/// True when a loaded form has the name, compared without regard to case.
bool IsFormLoaded(std::wstring_view name);

/// Puts the window among the topmost ones, or takes it out of them; place and size stay.
void SetFormTopMost(HWND window, bool topMost);

/// Removes pending keys and clicks of a window and its controls from the queue.
void dropInput(HWND window);

/// Brings a window to the front of all programs' windows; every error is ignored.
void ForceForegroundWindow(HWND window);

}  // namespace tlpacscfg::win32
