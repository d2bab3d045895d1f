#include "automation/read_variant.h"

#include <oleauto.h>

#include <algorithm>
#include <iterator>
#include <new>

namespace tlpacscfg {
namespace {

constexpr VARTYPE kToVariant = VT_BYREF | VT_VARIANT;

bool isNullReference(const VARIANT& value) {
  return (value.vt & VT_BYREF) != 0 && value.byref == nullptr;
}

bool isScalar(VARTYPE type) {
  return isPlain(type) || type == VT_EMPTY || type == VT_NULL || type == VT_ERROR ||
         type == VT_DISPATCH || type == VT_UNKNOWN;
}

/// The system's conversion trusts the pointers of arrays and records, and what it does with types
/// that do not exist is not known.
bool isConvertible(const VARIANT& value) {
  const VARIANT& given = target(value);
  const auto type = static_cast<VARTYPE>(given.vt & ~VT_BYREF);
  if ((type & VT_ARRAY) == 0) return isScalar(type);
  const SAFEARRAY* const array = (given.vt & VT_BYREF) != 0 ? *given.pparray : given.parray;
  return array != nullptr && isScalar(static_cast<VARTYPE>(type & ~VT_ARRAY));
}

}  // namespace

HRESULT checkReferences(const VARIANT& value) {
  if (isNullReference(value) || isNullReference(target(value))) return E_POINTER;
  if (value.vt == kToVariant && value.pvarVal->vt == kToVariant) return E_INVALIDARG;
  return S_OK;
}

const VARIANT& target(const VARIANT& value) {
  return value.vt == kToVariant && value.pvarVal ? *value.pvarVal : value;
}

bool isPlain(VARTYPE type) {
  constexpr VARTYPE kPlain[] = {VT_I1, VT_UI1,     VT_I2,   VT_UI2,  VT_I4,  VT_UI4,
                                VT_I8, VT_UI8,     VT_INT,  VT_UINT, VT_R4,  VT_R8,
                                VT_CY, VT_DECIMAL, VT_DATE, VT_BOOL, VT_BSTR};
  return std::ranges::find(kPlain, type) != std::end(kPlain);
}

HRESULT convert(const VARIANT& value, VARTYPE type, OwnedVariant& result) {
  if (!isConvertible(value)) return DISP_E_TYPEMISMATCH;
  // The source is only read; the declaration is older than const.
  const HRESULT status = VariantChangeTypeEx(result.out(), const_cast<VARIANT*>(&value),
                                             LOCALE_INVARIANT, VARIANT_ALPHABOOL, type);
  if (status == E_OUTOFMEMORY) throw std::bad_alloc();
  return SUCCEEDED(status) || status == DISP_E_OVERFLOW ? status : DISP_E_TYPEMISMATCH;
}

std::optional<std::wstring_view> textIn(const VARIANT& value) {
  const VARIANT& given = target(value);
  if (given.vt != VT_BSTR && given.vt != (VT_BYREF | VT_BSTR)) return std::nullopt;
  const BSTR letters = given.vt == VT_BSTR ? given.bstrVal : *given.pbstrVal;
  if (letters == nullptr) return std::wstring_view();
  return std::wstring_view(letters, SysStringLen(letters));
}

bool isMissing(const VARIANT& value) {
  return target(value).vt == VT_ERROR && target(value).scode == DISP_E_PARAMNOTFOUND;
}

}  // namespace tlpacscfg
