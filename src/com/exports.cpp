#include <windows.h>

#include <olectl.h>

#include <algorithm>

#include "com/class_factory.h"
#include "com/com_error.h"
#include "com/component.h"
#include "com/creatable_classes.h"
#include "com/registration.h"

using namespace tlpacscfg;

STDAPI DllGetClassObject(REFCLSID classId, REFIID id, void** result) {
  if (result == nullptr) return E_POINTER;
  *result = nullptr;
  return guarded([&]() -> HRESULT {
    const auto classes = creatableClasses();
    const auto type = std::ranges::find_if(
        classes, [&](const CreatableClass& candidate) { return candidate.id == classId; });
    if (type == classes.end()) return CLASS_E_CLASSNOTAVAILABLE;
    const auto factory = ComPtr<IClassFactory>::sharing(new ClassFactory(*type));
    return factory->QueryInterface(id, result);
  });
}

STDAPI DllCanUnloadNow() { return mayUnload() ? S_OK : S_FALSE; }

STDAPI DllRegisterServer() {
  return guarded([] { return registerComponent(); });
}

STDAPI DllUnregisterServer() {
  return guarded([] { return unregisterComponent(); });
}

extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, LPVOID processEnds) {
  if (reason == DLL_PROCESS_DETACH && processEnds != nullptr) {
    guarded([] {
      abandonModuleState();
      return S_OK;
    });
  }
  return TRUE;
}
