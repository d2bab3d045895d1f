#include "ui/workstation_list/view/progress_window.h"

#include <commctrl.h>

#include <utility>

#include "ui/resource.h"

namespace tlpacscfg {
namespace {

constexpr std::chrono::milliseconds kDelay{1000};
/// The minimum time between two paintings, so that they do not slow down the work.
constexpr std::chrono::milliseconds kInterval{100};

/// Also tells the system that the program still responds.
void paintWindows() {
  // A window of the host that never validates itself would be painted endlessly.
  constexpr int kMaxPaints = 100;
  MSG message;
  for (int i = 0; i < kMaxPaints; ++i) {
    if (!PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE | PM_QS_PAINT | PM_QS_SENDMESSAGE)) {
      return;
    }
    if (message.message == WM_QUIT) return PostQuitMessage(static_cast<int>(message.wParam));
    DispatchMessageW(&message);
  }
}

}  // namespace

ProgressWindow::ProgressWindow(HWND owner, std::wstring text, Clock clock)
    : owner_(owner), text_(std::move(text)), clock_(std::move(clock)), next_(clock_() + kDelay) {}

void ProgressWindow::onInit() { setText(IDC_progress_text, text_); }

void ProgressWindow::update(std::size_t done, std::size_t total) {
  const auto now = clock_();
  if (now <= next_) return;
  next_ = now + kInterval;
  if (!isCreated()) create(IDD_progress, owner_);
  const HWND bar = item(IDC_progress_bar);
  SendMessageW(bar, PBM_SETRANGE32, 0, static_cast<LPARAM>(total));
  SendMessageW(bar, PBM_SETPOS, static_cast<WPARAM>(done), 0);
  setText(IDC_progress_count, std::to_wstring(done) + L" of " + std::to_wstring(total));
  if (!isVisible()) appear();
  paintWindows();
}

void ProgressWindow::appear() {
  const bool topMost = owner_ && (GetWindowLongW(owner_, GWL_EXSTYLE) & WS_EX_TOPMOST) != 0;
  SetWindowPos(window(), topMost ? HWND_TOPMOST : HWND_TOP, 0, 0, 0, 0,
               SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE | SWP_SHOWWINDOW);
}

}  // namespace tlpacscfg
