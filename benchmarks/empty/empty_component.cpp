#include <windows.h>
#include <objbase.h>
#include <oaidl.h>

namespace {

/// Returns itself for every interface; exists as long as the DLL.
template <class Interface>
class Static : public Interface {
 public:
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void** object) override {
    *object = this;
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
  ULONG STDMETHODCALLTYPE Release() override { return 1; }
};

class Object : public Static<IDispatch> {
 public:
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                   UINT*) override {
    return E_NOTIMPL;
  }
};

class Factory : public Static<IClassFactory> {
 public:
  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown*, REFIID id, void** object) override {
    return object_.QueryInterface(id, object);
  }
  HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }

 private:
  Object object_;
};

Factory g_factory;

}  // namespace

STDAPI DllGetClassObject(REFCLSID, REFIID id, void** object) {
  return g_factory.QueryInterface(id, object);
}

STDAPI DllCanUnloadNow() { return S_OK; }
