#include "automation/class_factory.h"

#include "automation/com_error.h"
#include "automation/com_module.h"
#include "automation/module_lock.h"

namespace tlpacscfg {

ClassFactory::ClassFactory(const CreatableClass& type) : type_(type) { lockServer(); }
ClassFactory::~ClassFactory() { unlockServer(); }

HRESULT ClassFactory::CreateInstance(IUnknown* outer, REFIID id, void** result) {
  if (result == nullptr) return E_POINTER;
  *result = nullptr;
  if (outer != nullptr) return CLASS_E_NOAGGREGATION;
  return guarded(
      [&] {
        // The constructor of the first object uses shared state already.
        const ObjectReference creating;
        return type_.create()->QueryInterface(id, result);
      },
      [](const Failure& failure) {
        publish(failure, comServer().name, IID_IClassFactory);
        return failure.result;
      });
}

HRESULT ClassFactory::LockServer(BOOL lock) {
  lock ? lockServer() : unlockServer();
  return S_OK;
}

}  // namespace tlpacscfg
