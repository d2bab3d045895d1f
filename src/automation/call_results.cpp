#include "automation/call_results.h"

#include "automation/read_variant.h"
#include "support/conversions.h"
#include "support/runtime_error.h"

namespace tlpacscfg {
namespace {

/// What `read` makes of a value that is neither Empty nor Null.
template <class Read>
auto readValue(const VARIANT& result, Read read) -> decltype(read(result)) {
  const VARIANT& value = valueOf(result);
  if (value.vt == VT_EMPTY) return {};
  if (value.vt == VT_NULL) raise(ErrorNumber::InvalidUseOfNull);
  return read(value);
}

}  // namespace

const VARIANT& valueOf(const VARIANT& result) {
  if (FAILED(checkReferences(result))) raise(ErrorNumber::TypeMismatch);
  return target(result);
}

OwnedVariant plainValue(const VARIANT& value, VARTYPE type) {
  if (!isPlain(static_cast<VARTYPE>(value.vt & ~VT_BYREF))) raise(ErrorNumber::TypeMismatch);
  OwnedVariant result;
  const HRESULT status = convert(value, type, result);
  if (status == DISP_E_OVERFLOW) raise(ErrorNumber::Overflow);
  if (FAILED(status)) raise(ErrorNumber::TypeMismatch);
  return result;
}

std::wstring plainText(const VARIANT& value) {
  return std::wstring(textIn(plainValue(value, VT_BSTR).get()).value_or(L""));
}

bool truthOf(const VARIANT& result) {
  return readValue(result, [](const VARIANT& value) {
    return value.vt == VT_BSTR ? toBoolean(plainText(value))
                               : plainValue(value, VT_BOOL).get().boolVal != VARIANT_FALSE;
  });
}

std::int32_t numberOf(const VARIANT& result) {
  return readValue(result, [](const VARIANT& value) -> std::int32_t {
    return value.vt == VT_BSTR ? toInt32(plainText(value)) : plainValue(value, VT_I4).get().lVal;
  });
}

std::wstring textOf(const VARIANT& result) { return readValue(result, plainText); }

}  // namespace tlpacscfg
