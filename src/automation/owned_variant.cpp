#include "automation/owned_variant.h"

#include <new>

#include "support/secret.h"

namespace tlpacscfg {

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
