#pragma once

#include <unknwn.h>

#include <atomic>

#include "automation/com_server.h"

namespace tlpacscfg {

/// Creates the objects of one class. A living factory keeps the DLL loaded.
class ClassFactory final : public IClassFactory {
 public:
  explicit ClassFactory(const CreatableClass& type);

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** result) override;
  ULONG STDMETHODCALLTYPE AddRef() override;
  ULONG STDMETHODCALLTYPE Release() override;

  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID id, void** result) override;
  HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override;

 private:
  ~ClassFactory();

  std::atomic<ULONG> references_ = 0;
  const CreatableClass& type_;
};

}  // namespace tlpacscfg
