#include "ui/show_form/show_form.h"

#include <windows.h>

#include <optional>
#include <utility>

#include "data/direct_connections.h"
#include "host/site_access.h"
#include "log/log_support.h"
#include "support/scope_exit.h"
#include "support/system.h"
#include "support/text.h"
#include "ui/show_form/windows.h"

namespace tlpacscfg {
namespace {

constexpr std::uint8_t kShown = 0;
constexpr std::uint8_t kNotShown = 1;

/// Set while a list window is loaded: a host may call again from the messages processed meanwhile.
frmPACSList* g_loadedList = nullptr;

/// The exit code of a host that is ending; null otherwise.
std::optional<int> processMessages() {
  MSG message;
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
    if (message.message == WM_QUIT) return static_cast<int>(message.wParam);
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
  return std::nullopt;
}

/// If the host ends meanwhile, its quit message waits until the list is closed.
void waitUntilUnloaded(frmPACSList& list) {
  constexpr DWORD kWaitMilliseconds = 10;
  std::optional<int> exitCode;
  const ScopeExit passOn([&] {
    if (exitCode) PostQuitMessage(*exitCode);
  });
  while (list.isCreated()) {
    MsgWaitForMultipleObjectsEx(0, nullptr, kWaitMilliseconds, QS_ALLINPUT, MWMO_INPUTAVAILABLE);
    const std::optional<int> ending = processMessages();
    if (!ending) continue;
    exitCode = ending;
    try {
      if (list.isCreated()) list.askToClose();
    } catch (...) {
      win32::reportCurrentException();
    }
  }
}

/// False when no window can be shown: this call comes from a message box of the closing list, which
/// cannot be answered until the call returns.
bool showList(const std::shared_ptr<clsConfig>& config) {
  const bool loaded = g_loadedList != nullptr && g_loadedList->isCreated();
  if (loaded && (g_loadedList->isClosing() || system::showMessage.anyOpen())) return false;
  const ScopeExit unloaded([&] { config->ConfigLoaded = false; });
  if (loaded) {
    g_loadedList->BringToFront();
    config->ConfigLoaded = true;
    waitUntilUnloaded(*g_loadedList);
    return true;
  }
  Windows windows(config);
  frmPACSList& list = windows.list;
  const ScopeExit forget([before = std::exchange(g_loadedList, &list)] { g_loadedList = before; });
  list.Show();
  config->ConfigLoaded = true;
  waitUntilUnloaded(list);
  return true;
}

bool databaseAnswers(clsConfig& config) {
  try {
    const SiteAccess access(config);
    return TestDatabaseConnection();
  } catch (const std::exception& error) {
    logFailure(L"ShowForm failed", describe(error));
    return false;
  }
}

}  // namespace

std::uint8_t ShowForm(const std::shared_ptr<clsConfig>& config) {
  try {
    if (!databaseAnswers(*config)) {
      WriteLog(L"[TLPACSCFG] Database connection test failed", log_level::kOutcome);
      return kNotShown;
    }
    if (showList(config)) return kShown;
    WriteLog(L"[TLPACSCFG] ShowForm was called while the workstation list waits for an answer",
             log_level::kError);
    return kNotShown;
  } catch (...) {
    // The host gets only the code; the reason is in the log.
    logFailure(L"ShowForm failed", describeCurrent());
    return kNotShown;
  }
}

}  // namespace tlpacscfg
