#pragma once

#include <oaidl.h>
#include <ocidl.h>

#include <atomic>
#include <memory>

#include "automation/com_class.h"
#include "automation/com_error.h"
#include "automation/com_module.h"

namespace tlpacscfg {

/// Leads from a COM object back to the C++ object behind it, within this DLL only.
struct CoreObject : IUnknown {
  virtual std::shared_ptr<void> coreOf(const ComClass& type) = 0;
};
extern const IID IID_CoreObject;

/// The one implementation of IDispatch: it calls what the member table of its class says.
class DispatchObject final : public IDispatch,
                             public ISupportErrorInfo,
                             public IProvideClassInfo,
                             public CoreObject {
 public:
  DispatchObject(std::shared_ptr<void> core, const ComClass& type);

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** result) override;
  ULONG STDMETHODCALLTYPE AddRef() override;
  ULONG STDMETHODCALLTYPE Release() override;

  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override;
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) override;
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count, LCID locale,
                                          DISPID* ids) override;
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID reserved, LCID locale, WORD flags,
                                   DISPPARAMS* passed, VARIANT* result, EXCEPINFO* exception,
                                   UINT* badArgument) override;

  HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID id) override;
  HRESULT STDMETHODCALLTYPE GetClassInfo(ITypeInfo** info) override;

  std::shared_ptr<void> coreOf(const ComClass& type) override;

 private:
  ~DispatchObject();

  struct Call {
    DISPID id;
    WORD flags;
    DISPPARAMS& passed;
    EXCEPINFO* exception;
    UINT* badArgument;
  };

  const Member& select(const Call& call) const;
  HRESULT run(const Call& call, VARIANT* result);
  HRESULT callDefaultOf(const Member& property, const Call& call, VARIANT* result);
  HRESULT report(const Failure& failure, EXCEPINFO* exception, UINT* badArgument) const;

  // Destroyed last: the C++ object may use shared state until its own end.
  ObjectReference alive_;
  std::atomic<ULONG> references_ = 0;
  std::shared_ptr<void> core_;
  const ComClass& type_;
};

}  // namespace tlpacscfg
