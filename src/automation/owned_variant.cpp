#include "automation/owned_variant.h"

#include <new>

#include "support/secret.h"

namespace tlpacscfg {

OwnedVariant::OwnedVariant(std::wstring_view text) : OwnedVariant() {
  value_.bstrVal = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
  if (value_.bstrVal == nullptr) throw std::bad_alloc();
  value_.vt = VT_BSTR;
}

OwnedVariant::OwnedVariant(bool value) : OwnedVariant() {
  value_.vt = VT_BOOL;
  value_.boolVal = value ? VARIANT_TRUE : VARIANT_FALSE;
}

OwnedVariant::OwnedVariant(std::uint8_t number) : OwnedVariant() {
  value_.vt = VT_UI1;
  value_.bVal = number;
}

OwnedVariant::OwnedVariant(std::int16_t number) : OwnedVariant() {
  value_.vt = VT_I2;
  value_.iVal = number;
}

OwnedVariant::OwnedVariant(std::int32_t number) : OwnedVariant() {
  value_.vt = VT_I4;
  value_.lVal = number;
}

OwnedVariant::OwnedVariant(ComPtr<IDispatch> object) : OwnedVariant() {
  value_.vt = VT_DISPATCH;
  value_.pdispVal = object.detach();
}

OwnedVariant::OwnedVariant(ComPtr<IUnknown> object) : OwnedVariant() {
  value_.vt = VT_UNKNOWN;
  value_.punkVal = object.detach();
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
