#include <windows.h>

#include <memory>
#include <utility>

#include "automation/com_class.h"
#include "automation/com_server.h"
#include "com/identities.h"
#include "data/database.h"
#include "data/mod_main.h"
#include "data/tl_comm_client.h"
#include "host/config.h"
#include "support/brnkregs.h"

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
  DisconnectDatabase();
  releaseModMain();
}

template <class Pointer>
void abandon(Pointer& pointer) {
  new Pointer(std::move(pointer));
}

/// Leaves connections to the process that ends: their drivers may be gone already.
void abandonModuleState() {
  abandon(modMain);
  abandon(modTlCommClient);
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
