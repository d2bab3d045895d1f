#include "automation/item_enumerator.h"

#include <algorithm>
#include <utility>

#include "automation/com_error.h"
#include "automation/owned_variant.h"

namespace tlpacscfg {

ItemEnumerator::ItemEnumerator(std::shared_ptr<const Items> items, const ComClass& itemType,
                               std::size_t next)
    : items_(std::move(items)), itemType_(itemType), next_(next) {}

ComPtr<IUnknown> ItemEnumerator::create(Items items, const ComClass& itemType) {
  auto shared = std::make_shared<const Items>(std::move(items));
  return ComPtr<IUnknown>::sharing(new ItemEnumerator(std::move(shared), itemType, 0));
}

HRESULT ItemEnumerator::Next(ULONG count, VARIANT* values, ULONG* fetched) {
  if (fetched) *fetched = 0;
  if (values == nullptr || (fetched == nullptr && count != 1)) return E_POINTER;
  return guarded([&] {
    checkThread();
    std::vector<OwnedVariant> found;
    while (found.size() < count && next_ + found.size() < items_->size()) {
      found.emplace_back(wrapObject((*items_)[next_ + found.size()], itemType_));
    }
    for (std::size_t i = 0; i < found.size(); ++i) values[i] = found[i].release();
    next_ += found.size();
    if (fetched) *fetched = static_cast<ULONG>(found.size());
    return found.size() == count ? S_OK : S_FALSE;
  });
}

HRESULT ItemEnumerator::Skip(ULONG count) {
  const std::size_t left = items_->size() - next_;
  next_ += std::min<std::size_t>(count, left);
  return count <= left ? S_OK : S_FALSE;
}

HRESULT ItemEnumerator::Reset() {
  next_ = 0;
  return S_OK;
}

HRESULT ItemEnumerator::Clone(IEnumVARIANT** copy) {
  if (copy == nullptr) return E_POINTER;
  *copy = nullptr;
  return guarded([&] {
    *copy = ComPtr<IEnumVARIANT>::sharing(new ItemEnumerator(items_, itemType_, next_)).detach();
    return S_OK;
  });
}

}  // namespace tlpacscfg
