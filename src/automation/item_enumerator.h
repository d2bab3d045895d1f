#pragma once

#include <oaidl.h>

#include <memory>
#include <vector>

#include "automation/com_class.h"
#include "automation/com_module.h"
#include "automation/com_object.h"

namespace tlpacscfg {

/// Enumerates the items that a collection held when it was created.
class ItemEnumerator final : public ComObject<IEnumVARIANT> {
 public:
  using Items = std::vector<std::shared_ptr<void>>;

  static ComPtr<IUnknown> create(Items items, const ComClass& itemType);

  HRESULT STDMETHODCALLTYPE Next(ULONG count, VARIANT* values, ULONG* fetched) override;
  HRESULT STDMETHODCALLTYPE Skip(ULONG count) override;
  HRESULT STDMETHODCALLTYPE Reset() override;
  HRESULT STDMETHODCALLTYPE Clone(IEnumVARIANT** copy) override;

 private:
  ItemEnumerator(std::shared_ptr<const Items> items, const ComClass& itemType, std::size_t next);

  ObjectReference alive_;
  std::shared_ptr<const Items> items_;
  const ComClass& itemType_;
  std::size_t next_;
};

}  // namespace tlpacscfg
