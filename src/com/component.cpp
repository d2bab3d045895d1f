#include "com/component.h"

#include <oleauto.h>

#include <array>
#include <atomic>
#include <mutex>
#include <string>
#include <utility>

#include "com/com_error.h"
#include "data/database.h"
#include "data/tl_comm_client.h"
#include "support/secret.h"

extern "C" IMAGE_DOS_HEADER __ImageBase;

namespace tlpacscfg {
namespace {

std::atomic<long> objects = 0;
std::atomic<long> locks = 0;

std::mutex typeLibraryMutex;
ComPtr<ITypeLib> typeLibrary;

void releaseModuleState() {
  g_rsQuery.reset();
  DisconnectDatabase();
  // A new object marks an open connection as closed; such a one is still held here.
  g_conSql.reset();
  g_envSql.reset();
  g_conOffline.reset();
  g_envOffline.reset();
  g_objConfig.reset();
  wipe(g_strSqlPassword);
  const std::scoped_lock lock(typeLibraryMutex);
  typeLibrary = nullptr;
}

template <class Pointer>
void abandon(Pointer& pointer) {
  new Pointer(std::move(pointer));
}

}  // namespace

ObjectReference::ObjectReference() { ++objects; }

ObjectReference::~ObjectReference() {
  if (--objects > 0) return;
  guarded([] {
    releaseModuleState();
    return S_OK;
  });
}

void lockServer() { ++locks; }
void unlockServer() { --locks; }

bool mayUnload() { return objects == 0 && locks == 0; }

std::wstring modulePath() {
  std::array<wchar_t, 32768> path{};
  const DWORD length =
      GetModuleFileNameW(moduleHandle(), path.data(), static_cast<DWORD>(path.size()));
  return std::wstring(path.data(), length);
}

HMODULE moduleHandle() { return reinterpret_cast<HMODULE>(&__ImageBase); }

ComPtr<ITypeInfo> typeInfoOf(REFGUID id) {
  const std::scoped_lock lock(typeLibraryMutex);
  if (!typeLibrary) {
    const HRESULT status = LoadTypeLibEx(modulePath().c_str(), REGKIND_NONE, typeLibrary.out());
    if (FAILED(status)) throw ComError(status);
  }
  ComPtr<ITypeInfo> info;
  const HRESULT status = typeLibrary->GetTypeInfoOfGuid(id, info.out());
  if (FAILED(status)) throw ComError(status);
  return info;
}

void abandonModuleState() {
  abandon(g_rsQuery);
  abandon(g_objTlCommClient);
  abandon(g_conSql);
  abandon(g_envSql);
  abandon(g_conOffline);
  abandon(g_envOffline);
  abandon(typeLibrary);
}

}  // namespace tlpacscfg
