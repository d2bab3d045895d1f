#pragma once

#include <oaidl.h>
#include <ocidl.h>

#include <memory>

#include "automation/com_class.h"
#include "automation/com_error.h"
#include "automation/com_module.h"
#include "automation/com_object.h"

namespace tlpacscfg {

/// Leads from a COM object back to the C++ object behind it, within this DLL only.
struct CoreObject : IUnknown {
  virtual std::shared_ptr<void> coreOf(const ComClass& type) = 0;
};

}  // namespace tlpacscfg

__CRT_UUID_DECL(tlpacscfg::CoreObject, 0x0c2b8dc1, 0x7f0e, 0x4f0a, 0x9d, 0x52, 0x3b, 0x6f, 0x0a,
                0x84, 0x5e, 0x17)

namespace tlpacscfg {

/// The one implementation of IDispatch: it calls what the member table of its class says.
class DispatchObject final
    : public ComObject<IDispatch, ISupportErrorInfo, IProvideClassInfo, CoreObject> {
 public:
  DispatchObject(std::shared_ptr<void> core, const ComClass& type);

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
  ~DispatchObject() override;
  void* interfaceOf(REFIID id) override;

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
  std::shared_ptr<void> core_;
  const ComClass& type_;
};

}  // namespace tlpacscfg
