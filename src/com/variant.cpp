#include "com/variant.h"

#include <oleauto.h>

#include <new>

#include "com/com_error.h"
#include "support/scope_exit.h"
#include "support/secret.h"

namespace tlpacscfg {

Variant::Variant(std::int32_t number) {
  VARIANT& value = *out();
  value.vt = VT_I4;
  value.lVal = number;
}

Variant::Variant(std::uint8_t number) {
  VARIANT& value = *out();
  value.vt = VT_UI1;
  value.bVal = number;
}

Variant::Variant(ComPtr<IDispatch> object) {
  VARIANT& value = *out();
  value.vt = VT_DISPATCH;
  value.pdispVal = object.detach();
}

Variant::Variant(ComPtr<IUnknown> object) {
  VARIANT& value = *out();
  value.vt = VT_UNKNOWN;
  value.punkVal = object.detach();
}

void wipeText(Variant& value) {
  if (value.get().vt != VT_BSTR) return;
  wipeMemory(value.get().bstrVal, SysStringByteLen(value.get().bstrVal));
}

Variant converted(const VARIANT& value, VARTYPE type) {
  if (!isConvertible(value)) throw ComError(DISP_E_TYPEMISMATCH);
  Variant result;
  // The source is only read; the declaration is older than const.
  const HRESULT status = VariantChangeTypeEx(result.out(), const_cast<VARIANT*>(&value),
                                             LOCALE_INVARIANT, VARIANT_ALPHABOOL, type);
  if (status == E_OUTOFMEMORY) throw std::bad_alloc();
  if (status == DISP_E_OVERFLOW) throw ComError(DISP_E_OVERFLOW);
  if (FAILED(status)) throw ComError(DISP_E_TYPEMISMATCH);
  return result;
}

bool isMissing(const VARIANT& value) {
  return target(value).vt == VT_ERROR && target(value).scode == DISP_E_PARAMNOTFOUND;
}

template <>
std::int16_t fromVariant(const VARIANT& value) {
  return converted(value, VT_I2).get().iVal;
}

template <>
std::int32_t fromVariant(const VARIANT& value) {
  return converted(value, VT_I4).get().lVal;
}

template <>
bool fromVariant(const VARIANT& value) {
  return converted(value, VT_BOOL).get().boolVal != VARIANT_FALSE;
}

template <>
std::wstring fromVariant(const VARIANT& value) {
  if (const auto text = textIn(value)) return std::wstring(*text);
  Variant text = converted(value, VT_BSTR);
  const ScopeExit wiping([&] { wipeText(text); });
  return std::wstring(textIn(text.get()).value_or(L""));
}

template <>
ComPtr<IUnknown> fromVariant(const VARIANT& value) {
  const VARIANT& object = target(value);
  switch (object.vt) {
    case VT_DISPATCH:
    case VT_UNKNOWN:
      return ComPtr<IUnknown>::sharing(object.punkVal);
    case VT_BYREF | VT_DISPATCH:
    case VT_BYREF | VT_UNKNOWN:
      return ComPtr<IUnknown>::sharing(*object.ppunkVal);
    default:
      throw ComError(DISP_E_TYPEMISMATCH);
  }
}

}  // namespace tlpacscfg
