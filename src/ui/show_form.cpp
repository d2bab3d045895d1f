#include "ui/show_form.h"

#include <windows.h>

#include "data/database.h"
#include "log/log_support.h"
#include "support/scope_exit.h"
#include "ui/list_window.h"

namespace tlpacscfg {
namespace {

constexpr std::uint8_t kShown = 0;
constexpr std::uint8_t kNotShown = 1;

/// Set while a list window is loaded: a host may call again from the messages processed meanwhile.
frmPACSList* g_loadedList = nullptr;

/// False when the host's program is ending.
bool processMessages() {
  MSG message;
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
    if (message.message == WM_QUIT) {
      PostQuitMessage(static_cast<int>(message.wParam));
      return false;
    }
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
  return true;
}

void waitUntilUnloaded() {
  constexpr DWORD kWaitMilliseconds = 10;
  while (win32::IsFormLoaded(frmPACSList::kName)) {
    MsgWaitForMultipleObjectsEx(0, nullptr, kWaitMilliseconds, QS_ALLINPUT, MWMO_INPUTAVAILABLE);
    if (!processMessages()) return;
  }
}

void showList(const std::shared_ptr<clsConfig>& config) {
  if (g_loadedList != nullptr) {
    g_loadedList->BringToFront();
    config->ConfigLoaded = true;
    return waitUntilUnloaded();
  }
  frmPACSList list(config);
  g_loadedList = &list;
  const ScopeExit forget([] { g_loadedList = nullptr; });
  list.Show();
  config->ConfigLoaded = true;
  waitUntilUnloaded();
}

}  // namespace

std::uint8_t ShowForm(const std::shared_ptr<clsConfig>& config) {
  try {
    if (!TestDatabaseConnection()) {
      WriteLog(L"[TLPACSCFG] Database connection test failed", log_level::kOutcome);
      return kNotShown;
    }
    showList(config);
    return kShown;
  } catch (const std::exception&) {
    // A host learns of a failure by the code alone.
    return kNotShown;
  }
}

}  // namespace tlpacscfg
