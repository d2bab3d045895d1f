#pragma once

#include <unknwn.h>

#include <atomic>

namespace tlpacscfg {

/// The IUnknown of an object with these interfaces. It is created without a reference and destroyed
/// with the last one.
template <class First, class... Others>
class ComObject : public First, public Others... {
 public:
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** result) override {
    if (result == nullptr) return E_POINTER;
    *result = interfaceOf(id);
    if (*result == nullptr) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }

  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }

  ULONG STDMETHODCALLTYPE Release() override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }

 protected:
  virtual ~ComObject() = default;

  /// Null for an interface that the object does not offer.
  virtual void* interfaceOf(REFIID id) {
    if (id == IID_IUnknown || id == __uuidof(First)) return static_cast<First*>(this);
    void* found = nullptr;
    ((id == __uuidof(Others) ? found = static_cast<Others*>(this) : nullptr), ...);
    return found;
  }

 private:
  std::atomic<ULONG> references_ = 0;
};

}  // namespace tlpacscfg
