#pragma once

#include <oaidl.h>

#include <atomic>
#include <memory>
#include <vector>

#include "automation/com_class.h"
#include "automation/com_module.h"

namespace tlpacscfg {

/// Enumerates the items that a collection held when it was created.
class ItemEnumerator final : public IEnumVARIANT {
 public:
  using Items = std::vector<std::shared_ptr<void>>;

  static ComPtr<IUnknown> create(Items items, const ComClass& itemType);

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** result) override;
  ULONG STDMETHODCALLTYPE AddRef() override;
  ULONG STDMETHODCALLTYPE Release() override;

  HRESULT STDMETHODCALLTYPE Next(ULONG count, VARIANT* values, ULONG* fetched) override;
  HRESULT STDMETHODCALLTYPE Skip(ULONG count) override;
  HRESULT STDMETHODCALLTYPE Reset() override;
  HRESULT STDMETHODCALLTYPE Clone(IEnumVARIANT** copy) override;

 private:
  ItemEnumerator(std::shared_ptr<const Items> items, const ComClass& itemType, std::size_t next);
  ~ItemEnumerator() = default;

  ObjectReference alive_;
  std::atomic<ULONG> references_ = 0;
  std::shared_ptr<const Items> items_;
  const ComClass& itemType_;
  std::size_t next_;
};

}  // namespace tlpacscfg
