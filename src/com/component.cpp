#include <windows.h>

#include <memory>
#include <utility>

#include "automation/com_class.h"
#include "automation/com_server.h"
#include "com/identities.h"
#include "data/direct_connections.h"
#include "data/mod_main.h"
#include "data/tl_comm_client.h"
#include "host/host_object.h"
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

template <class State>
void abandon(State& state) {
  new State(std::move(state));
}

/// Leaks the connections when the process ends: their drivers may be unloaded already.
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
      // The process ends; there is no caller.
    }
  }
  return TRUE;
}
