#include "automation/owned_variant.h"

#include <cstddef>
#include <new>

#include "support/secret.h"

namespace tlpacscfg {

// Callers compiled by others pass values of this layout: a type, three reserved words, and the
// value.
static_assert(offsetof(VARIANT, llVal) == 8 && offsetof(VARIANT, bstrVal) == 8);
static_assert(sizeof(VARIANT) == 8 + 2 * sizeof(void*) && alignof(VARIANT) == 8);
static_assert(sizeof(DATE) == 8 && sizeof(VARIANT_BOOL) == 2 && sizeof(DECIMAL) == 16);

OwnedVariant::OwnedVariant(std::wstring_view text) : OwnedVariant() {
  value_.bstrVal = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
  if (value_.bstrVal == nullptr) throw std::bad_alloc();
  value_.vt = VT_BSTR;
}

OwnedVariant OwnedVariant::zero(VARTYPE type) {
  OwnedVariant result;
  result.value_.llVal = 0;
  result.value_.vt = type;
  return result;
}

void OwnedVariant::wipeText() {
  if (value_.vt == VT_BSTR) wipeMemory(value_.bstrVal, SysStringByteLen(value_.bstrVal));
}

}  // namespace tlpacscfg
