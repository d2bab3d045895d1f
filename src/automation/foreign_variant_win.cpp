#include <windows.h>

#include <oleauto.h>

#include "automation/foreign_variant.h"

namespace tlpacscfg {
namespace {

constexpr VARTYPE kToVariant = VT_BYREF | VT_VARIANT;

bool isScalar(VARTYPE type) {
  switch (type) {
    case VT_EMPTY:
    case VT_NULL:
    case VT_ERROR:
    case VT_BOOL:
    case VT_I1:
    case VT_UI1:
    case VT_I2:
    case VT_UI2:
    case VT_I4:
    case VT_UI4:
    case VT_I8:
    case VT_UI8:
    case VT_INT:
    case VT_UINT:
    case VT_R4:
    case VT_R8:
    case VT_CY:
    case VT_DATE:
    case VT_DECIMAL:
    case VT_BSTR:
    case VT_DISPATCH:
    case VT_UNKNOWN:
      return true;
    default:
      return false;
  }
}

bool refersToNothing(const VARIANT& value) {
  return (value.vt & VT_BYREF) != 0 && value.byref == nullptr;
}

}  // namespace

const VARIANT& target(const VARIANT& value) {
  return value.vt == kToVariant && value.pvarVal ? *value.pvarVal : value;
}

HRESULT checkReferences(const VARIANT& value) {
  if (refersToNothing(value) || refersToNothing(target(value))) return E_POINTER;
  if (value.vt == kToVariant && value.pvarVal->vt == kToVariant) return E_INVALIDARG;
  return S_OK;
}

bool isConvertible(const VARIANT& value) {
  const VARIANT& given = target(value);
  const auto type = static_cast<VARTYPE>(given.vt & ~VT_BYREF);
  if ((type & VT_ARRAY) == 0) return isScalar(type);
  const SAFEARRAY* const array = (given.vt & VT_BYREF) != 0 ? *given.pparray : given.parray;
  return array != nullptr && isScalar(static_cast<VARTYPE>(type & ~VT_ARRAY));
}

std::optional<std::wstring_view> textIn(const VARIANT& value) {
  const VARIANT& given = target(value);
  if (given.vt != VT_BSTR && given.vt != (VT_BYREF | VT_BSTR)) return std::nullopt;
  const BSTR letters = given.vt == VT_BSTR ? given.bstrVal : *given.pbstrVal;
  if (letters == nullptr) return std::wstring_view();
  return std::wstring_view(letters, SysStringLen(letters));
}

}  // namespace tlpacscfg
