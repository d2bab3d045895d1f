#pragma once

#include <string_view>

#include "ui/win32/dialog.h"

namespace tlpacscfg::win32 {

/// A named top-level dialog. From its creation to its destruction it counts as loaded, and Tab,
/// Enter, Esc and mnemonics work in it whatever message loop its host runs.
class Form : public Dialog {
 public:
  explicit Form(std::wstring_view name) : name_(name) {}
  ~Form() override { destroy(); }

  std::wstring_view name() const { return name_; }

  void load(int templateId, HWND owner);

  /// A key for a control of the form, before the dialog keys; true when it has been used up.
  virtual bool onKey(const MSG& message);

 protected:
  void onDestroyed() override;

 private:
  std::wstring_view name_;
};

/// True when a loaded form has the name, compared without regard to case.
bool IsFormLoaded(std::wstring_view name);

/// Puts the window among the topmost ones, or takes it out of them; place and size stay.
void SetFormTopMost(HWND window, bool topMost);

/// Forgets the keys and clicks that wait for a window or its controls.
void dropInput(HWND window);

/// Brings a window to the front of all programs' windows; every error is ignored.
void ForceForegroundWindow(HWND window);

}  // namespace tlpacscfg::win32
