#include <windows.h>

#include <memory>
#include <utility>

#include "automation/com_class.h"
#include "automation/com_server.h"
#include "com/identities.h"
#include "data/database.h"
#include "data/tl_comm_client.h"
#include "host/config.h"
#include "support/brnkregs.h"
#include "support/secret.h"

namespace tlpacscfg {
namespace {

template <class Core>
ComPtr<IDispatch> create() {
  return wrap(std::make_shared<Core>());
}

const CreatableClass kClasses[] = {
    {CLSID_clsConfig, L"TLPACSCFG.clsConfig", create<clsConfig>},
    {CLSID_brnkregs, L"TLPACSCFG.brnkregs", create<brnkregs>},
};

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
}

template <class Pointer>
void abandon(Pointer& pointer) {
  new Pointer(std::move(pointer));
}

/// Leaves connections to the process that ends: their drivers may be gone already.
void abandonModuleState() {
  abandon(g_rsQuery);
  abandon(g_objTlCommClient);
  abandon(g_conSql);
  abandon(g_envSql);
  abandon(g_conOffline);
  abandon(g_envOffline);
}

}  // namespace

const ComServer& comServer() {
  static const ComServer server{.name = L"TLPACSCFG",
                                .classes = kClasses,
                                .typeLibrary = &LIBID_TLPACSCFG,
                                .releaseSharedState = releaseModuleState};
  return server;
}

}  // namespace tlpacscfg

extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, LPVOID processEnds) {
  if (reason == DLL_PROCESS_DETACH && processEnds != nullptr) {
    try {
      tlpacscfg::abandonModuleState();
    } catch (...) {
      // Nothing is left to be told.
    }
  }
  return TRUE;
}
