#include "client/own_thread.h"

#include <windows.h>

#include <memory>
#include <utility>

#include "client/client_error.h"
#include "support/win_handle.h"

namespace tlpacscfg::client {
namespace {

struct Job {
  std::function<void()> work;
  HMODULE module = nullptr;
};

DWORD WINAPI runJob(void* passed) {
  std::unique_ptr<Job> job(static_cast<Job*>(passed));
  const HMODULE module = job->module;
  job->work();
  job.reset();
  FreeLibraryAndExitThread(module, 0);
}

/// The module of this code, which is not unloaded before it is freed once more.
HMODULE referToThisModule() {
  HMODULE module = nullptr;
  if (!GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                          reinterpret_cast<const wchar_t*>(&runJob), &module)) {
    throw ClientError(L"The client cannot be kept loaded.");
  }
  return module;
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
  return WaitForSingleObject(thread.get(), static_cast<DWORD>(time.count())) == WAIT_OBJECT_0;
}

}  // namespace tlpacscfg::client
