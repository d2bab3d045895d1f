#include <windows.h>

#include <array>
#include <vector>

#include "support/system.h"
#include "support/text.h"

namespace tlpacscfg::system {
namespace {

LocalTime systemLocalTime() {
  SYSTEMTIME now{};
  GetLocalTime(&now);
  return {now.wYear, now.wMonth, now.wDay, now.wHour, now.wMinute, now.wSecond, now.wMilliseconds};
}

std::wstring systemComputerName() {
  // A computer name has at most 15 characters; the sixteenth is its terminator.
  std::array<wchar_t, MAX_COMPUTERNAME_LENGTH + 1> name{};
  auto length = static_cast<DWORD>(name.size());
  if (!GetComputerNameW(name.data(), &length)) return {};
  return std::wstring(trimBlanks(std::wstring_view(name.data(), length)));
}

/// While a message box waits, no other window of the thread takes input.
class ThreadWindowsDisabled {
 public:
  explicit ThreadWindowsDisabled(HWND except) : except_(except) {
    EnumThreadWindows(GetCurrentThreadId(), &disable, reinterpret_cast<LPARAM>(this));
  }
  ~ThreadWindowsDisabled() {
    for (const HWND window : disabled_) EnableWindow(window, TRUE);
  }
  ThreadWindowsDisabled(const ThreadWindowsDisabled&) = delete;
  ThreadWindowsDisabled& operator=(const ThreadWindowsDisabled&) = delete;

 private:
  static BOOL CALLBACK disable(HWND window, LPARAM self) {
    auto& guard = *reinterpret_cast<ThreadWindowsDisabled*>(self);
    if (window != guard.except_ && IsWindowVisible(window) && IsWindowEnabled(window)) {
      try {
        guard.disabled_.push_back(window);
      } catch (...) {
        // Without memory for the list the other windows stay enabled.
        return FALSE;
      }
      EnableWindow(window, FALSE);
    }
    return TRUE;
  }

  HWND except_;
  std::vector<HWND> disabled_;
};

Answer messageBox(const Message& message) {
  UINT style = message.modality == Modality::System ? MB_SYSTEMMODAL : MB_APPLMODAL;
  if (message.icon == Icon::Critical) style |= MB_ICONERROR;
  if (message.buttons == Buttons::YesNo) style |= MB_YESNO;
  if (message.buttons == Buttons::YesNoCancel) style |= MB_YESNOCANCEL;
  if (message.buttons != Buttons::Ok) {
    if (message.defaultAnswer == Answer::No) style |= MB_DEFBUTTON2;
    if (message.defaultAnswer == Answer::Cancel) style |= MB_DEFBUTTON3;
  }
  const HWND owner = GetActiveWindow();
  const ThreadWindowsDisabled guard(owner);
  switch (MessageBoxW(owner, message.text.c_str(), message.title.c_str(), style)) {
    case IDYES:
      return Answer::Yes;
    case IDNO:
      return Answer::No;
    case IDCANCEL:
      return Answer::Cancel;
    default:
      return Answer::Ok;
  }
}

void pumpOnce() {
  MSG message;
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
    if (message.message == WM_QUIT) {
      PostQuitMessage(static_cast<int>(message.wParam));
      return;
    }
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
}

}  // namespace

std::function<LocalTime()> localTime = systemLocalTime;
std::function<std::wstring()> computerName = systemComputerName;
MessageBoxes showMessage(messageBox);
std::function<void()> processPendingMessages = pumpOnce;

}  // namespace tlpacscfg::system
