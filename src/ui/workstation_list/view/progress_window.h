#pragma once

#include <windows.h>

#include <chrono>
#include <cstddef>
#include <functional>
#include <string>

#include "ui/win32/dialog.h"

namespace tlpacscfg {

/// Shows the progress of long work on the user-interface thread. It appears after a second of work
/// and is destroyed with the object. The user can neither use nor close it.
class ProgressWindow : private win32::Dialog {
 public:
  using Clock = std::function<std::chrono::steady_clock::time_point()>;

  /// The owner may be null; the window is topmost when its owner is.
  ProgressWindow(HWND owner, std::wstring text, Clock clock = &std::chrono::steady_clock::now);

  /// To be called after each step of the work, however short; most calls do nothing. Windows of the
  /// thread are painted and messages that other threads wait for are answered, but no input, timer
  /// or posted message is processed: no command can start meanwhile.
  void update(std::size_t done, std::size_t total);

  using Dialog::isVisible;
  using Dialog::window;

 private:
  void onInit() override;
  void appear();

  HWND owner_;
  std::wstring text_;
  Clock clock_;
  std::chrono::steady_clock::time_point next_;
};

}  // namespace tlpacscfg
