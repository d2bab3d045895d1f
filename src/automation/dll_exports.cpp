#include <windows.h>

#include <objbase.h>

#include <algorithm>

#include "automation/class_factory.h"
#include "automation/com_error.h"
#include "automation/com_module.h"
#include "automation/com_server.h"
#include "automation/registration.h"

namespace tlpacscfg {

STDAPI DllGetClassObject(REFCLSID classId, REFIID id, void** result) {
  if (result == nullptr) return E_POINTER;
  *result = nullptr;
  return guarded([&]() -> HRESULT {
    const auto classes = comServer().classes;
    const auto type = std::ranges::find_if(
        classes, [&](const CreatableClass& candidate) { return candidate.id == classId; });
    if (type == classes.end()) return CLASS_E_CLASSNOTAVAILABLE;
    const auto factory = ComPtr<IClassFactory>::sharing(new ClassFactory(*type));
    return factory->QueryInterface(id, result);
  });
}

STDAPI DllCanUnloadNow() { return mayUnload() ? S_OK : S_FALSE; }

STDAPI DllRegisterServer() {
  return guarded([] { return registerServer(); });
}

STDAPI DllUnregisterServer() {
  return guarded([] { return unregisterServer(); });
}

}  // namespace tlpacscfg
