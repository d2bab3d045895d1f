#include "automation/com_module.h"

#include <oleauto.h>

#include <array>
#include <atomic>
#include <mutex>

#include "automation/com_error.h"
#include "automation/com_server.h"
#include "automation/module_lock.h"
#include "support/module_win.h"

namespace tlpacscfg {
namespace {

constexpr DWORD kNoThread = 0;

std::mutex mutex;
std::atomic<long> objectCount = 0;
/// The thread that shared state belongs to, until it is released.
std::atomic<DWORD> ownerThread = kNoThread;

/// Never destroyed: at the end of the process, the code that frees type libraries may be gone.
ComPtr<ITypeLib>& typeLibrary() {
  static auto& library = *new ComPtr<ITypeLib>;
  return library;
}

}  // namespace

ObjectReference::ObjectReference() {
  const std::scoped_lock lock(mutex);
  checkThread();
  if (comServer().releaseSharedState) ownerThread = GetCurrentThreadId();
  ++objectCount;
}

ObjectReference::~ObjectReference() {
  if (--objectCount > 0) return;
  if (const auto release = comServer().releaseSharedState) {
    guarded([&] {
      release();
      return S_OK;
    });
  }
  const std::scoped_lock lock(mutex);
  // Releasing may have let the host create an object.
  if (objectCount == 0) ownerThread = kNoThread;
  typeLibrary() = nullptr;
}

void checkThread() {
  const DWORD owner = ownerThread;
  if (owner != kNoThread && owner != GetCurrentThreadId()) throw ComError(RPC_E_WRONG_THREAD);
}

bool mayUnload() { return objectCount == 0 && !serverIsLocked(); }

std::wstring modulePath() {
  std::array<wchar_t, 32768> path{};
  const DWORD length =
      GetModuleFileNameW(moduleInstance(), path.data(), static_cast<DWORD>(path.size()));
  return std::wstring(path.data(), length);
}

ComPtr<ITypeInfo> typeInfoOf(REFGUID id) {
  const std::scoped_lock lock(mutex);
  HRESULT status = S_OK;
  if (!typeLibrary()) {
    status = LoadTypeLibEx(modulePath().c_str(), REGKIND_NONE, typeLibrary().out());
    if (FAILED(status)) throw ComError(status);
  }
  ComPtr<ITypeInfo> info;
  status = typeLibrary()->GetTypeInfoOfGuid(id, info.out());
  if (FAILED(status)) throw ComError(status);
  return info;
}

}  // namespace tlpacscfg
