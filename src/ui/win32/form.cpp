#include "ui/win32/form.h"

#include <algorithm>
#include <vector>

#include "support/text.h"
#include "support/handle_win.h"
#include "ui/win32/module.h"

namespace tlpacscfg::win32 {
namespace {

using HookHandle = UniqueHandle<HHOOK, &UnhookWindowsHookEx>;

/// The loaded forms of the user-interface thread and the hook that passes keys to them.
struct LoadedForms {
  std::vector<Form*> forms;
  HookHandle keyHook;
};

LoadedForms& loaded() {
  static LoadedForms instance;
  return instance;
}

bool isKeyMessage(UINT message) { return message >= WM_KEYFIRST && message <= WM_KEYLAST; }

/// Whether one of the forms handled the key.
bool isTaken(MSG& message) {
  // Handling a key may load or destroy forms.
  const std::vector<Form*> forms = loaded().forms;
  return std::any_of(forms.begin(), forms.end(), [&](Form* form) {
    const HWND window = form->window();
    const bool inside = message.hwnd == window || IsChild(window, message.hwnd);
    if (!inside || !(form->onKey(message) || IsDialogMessageW(window, &message))) return false;
    if (std::ranges::count(loaded().forms, form) > 0) form->onKeyHandled();
    return true;
  });
}

/// Handles dialog keys, because a host's message loop need not call IsDialogMessage.
LRESULT CALLBACK takeDialogKeys(int code, WPARAM wParam, LPARAM lParam) {
  auto& message = *reinterpret_cast<MSG*>(lParam);
  if (code == HC_ACTION && wParam == PM_REMOVE && isKeyMessage(message.message)) {
    try {
      if (isTaken(message)) message.message = WM_NULL;
    } catch (...) {
      reportCurrentException();
      message.message = WM_NULL;
    }
  }
  return CallNextHookEx(nullptr, code, wParam, lParam);
}

}  // namespace

void Form::load(int templateId, HWND owner) {
  LoadedForms& all = loaded();
  if (all.forms.empty()) {
    all.keyHook = HookHandle(
        SetWindowsHookExW(WH_GETMESSAGE, &takeDialogKeys, nullptr, GetCurrentThreadId()));
  }
  all.forms.push_back(this);
  try {
    create(templateId, owner);
  } catch (...) {
    Form::onDestroyed();
    throw;
  }
}

void Form::onDestroyed() {
  LoadedForms& all = loaded();
  std::erase(all.forms, this);
  if (all.forms.empty()) all.keyHook.reset();
}

bool IsFormLoaded(std::wstring_view name) {
  const std::vector<Form*>& forms = loaded().forms;
  return std::any_of(forms.begin(), forms.end(),
                     [&](const Form* form) { return equalIgnoringCase(form->name(), name); });
}

void SetFormTopMost(HWND window, bool topMost) {
  RECT place{};
  GetWindowRect(window, &place);
  SetWindowPos(window, topMost ? HWND_TOPMOST : HWND_NOTOPMOST, place.left, place.top,
               place.right - place.left, place.bottom - place.top, 0);
}

void dropInput(HWND window) {
  MSG message;
  while (PeekMessageW(&message, window, WM_KEYFIRST, WM_KEYLAST, PM_REMOVE) ||
         PeekMessageW(&message, window, WM_MOUSEFIRST, WM_MOUSELAST, PM_REMOVE)) {
    if (message.message == WM_QUIT) return PostQuitMessage(static_cast<int>(message.wParam));
  }
}

void ForceForegroundWindow(HWND window) {
  const HWND foreground = GetForegroundWindow();
  if (foreground == window) return;
  const DWORD foregroundThread = GetWindowThreadProcessId(foreground, nullptr);
  const DWORD thisThread = GetWindowThreadProcessId(window, nullptr);
  if (foregroundThread == thisThread) {
    SetForegroundWindow(window);
  } else {
    AttachThreadInput(foregroundThread, thisThread, TRUE);
    SetForegroundWindow(window);
    AttachThreadInput(foregroundThread, thisThread, FALSE);
  }
  ShowWindow(window, IsIconic(window) ? SW_RESTORE : SW_SHOW);
}

}  // namespace tlpacscfg::win32
