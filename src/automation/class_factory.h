#pragma once

#include "automation/com_object.h"
#include "automation/com_server.h"

namespace tlpacscfg {

/// Creates the objects of one class. A living factory keeps the DLL loaded.
class ClassFactory final : public ComObject<IClassFactory> {
 public:
  explicit ClassFactory(const CreatableClass& type);

  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID id, void** result) override;
  HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override;

 private:
  ~ClassFactory() override;

  const CreatableClass& type_;
};

}  // namespace tlpacscfg
