#pragma once

#include <windows.h>

#include <oaidl.h>

#include <atomic>

#include "client/session.h"

namespace tlpacscfg::client {

/// How many objects and locks keep the module loaded.
extern std::atomic<long> moduleUses;

/// The face of a session: IDispatch without a type library.
class ComClient final : public IDispatch {
 public:
  ComClient() { ++moduleUses; }

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** result) override;
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override;

  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override;
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) override;
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count, LCID locale,
                                          DISPID* ids) override;
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID reserved, LCID locale, WORD kind,
                                   DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception,
                                   UINT* badArgument) override;

 private:
  ~ComClient() { --moduleUses; }

  std::atomic<ULONG> references_ = 1;
  Session session_;
};

}  // namespace tlpacscfg::client
