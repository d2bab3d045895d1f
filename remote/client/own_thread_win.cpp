#include "client/own_thread_win.h"

#include <windows.h>

#include <memory>
#include <optional>
#include <utility>

#include "client/client_error.h"
#include "support/handle_win.h"

namespace tlpacscfg::client {
namespace {

struct Job {
  std::function<void()> work;
  HMODULE module = nullptr;
};

DWORD WINAPI runJob(void* passed) {
  std::unique_ptr<Job> job(static_cast<Job*>(passed));
  const HMODULE module = job->module;
  try {
    job->work();
  } catch (...) {
    // This thread has no caller to report to.
  }
  job.reset();
  FreeLibraryAndExitThread(module, 0);
}

/// This module, with a reference that keeps it loaded until it is freed.
HMODULE referToThisModule() {
  HMODULE module = nullptr;
  if (!GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                          reinterpret_cast<const wchar_t*>(&runJob), &module)) {
    throw ClientError(L"The client cannot be kept loaded.");
  }
  return module;
}

/// Waits for a handle. Meanwhile the thread's windows are painted and receive sent messages. Posted
/// messages (commands, keys, timers) stay in the queue, so that none of the host's code starts in
/// the middle of a call.
bool awaitPainting(HANDLE handle, std::chrono::milliseconds time) {
  using Clock = std::chrono::steady_clock;
  const Clock::time_point end = Clock::now() + time;
  std::optional<int> exitCode;
  DWORD status = WAIT_TIMEOUT;
  for (;;) {
    MSG message{};
    // This call also dispatches sent messages.
    if (PeekMessageW(&message, nullptr, WM_PAINT, WM_PAINT,
                     PM_REMOVE | PM_QS_PAINT | PM_QS_SENDMESSAGE)) {
      // WM_QUIT passes every filter.
      if (message.message == WM_QUIT) {
        exitCode = static_cast<int>(message.wParam);
      } else {
        DispatchMessageW(&message);
      }
    }
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now()).count();
    const DWORD wait = left > 0 ? static_cast<DWORD>(left) : 0;
    status = MsgWaitForMultipleObjectsEx(1, &handle, wait, QS_PAINT | QS_SENDMESSAGE,
                                         MWMO_INPUTAVAILABLE);
    // A window that is never done painting must not prolong the wait.
    if (status != WAIT_OBJECT_0 + 1 || wait == 0) break;
  }
  if (exitCode) PostQuitMessage(*exitCode);
  return status == WAIT_OBJECT_0;
}

}  // namespace

bool doneInTime(std::function<void()> work, std::chrono::milliseconds time) {
  auto job = std::make_unique<Job>(Job{std::move(work)});
  job->module = referToThisModule();
  const UniqueHandle<HANDLE, CloseHandle> thread(
      CreateThread(nullptr, 0, runJob, job.get(), 0, nullptr));
  if (!thread) {
    FreeLibrary(job->module);
    throw ClientError(L"The client cannot start a thread.");
  }
  // The thread owns its job.
  static_cast<void>(job.release());
  return awaitPainting(thread.get(), time);
}

}  // namespace tlpacscfg::client
