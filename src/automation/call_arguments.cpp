#include "automation/call_arguments.h"

#include <oleauto.h>

#include <algorithm>
#include <cstring>
#include <utility>

#include "automation/com_server.h"
#include "automation/read_variant.h"
#include "support/scope_exit.h"

namespace tlpacscfg {
namespace {

OwnedVariant converted(const VARIANT& value, VARTYPE type) {
  OwnedVariant result;
  const HRESULT status = convert(value, type, result);
  if (FAILED(status)) throw ComError(status);
  return result;
}

template <class Value>
void store(void* place, const Value& value) {
  std::memcpy(place, &value, sizeof(value));
}

void storeTyped(const VARIANT& place, const VARIANT& value) {
  switch (value.vt) {
    case VT_UI1:
      return store(place.byref, value.bVal);
    case VT_I2:
      return store(place.byref, value.iVal);
    case VT_BOOL:
      return store(place.byref, value.boolVal);
    case VT_I4:
      return store(place.byref, value.lVal);
    case VT_R4:
      return store(place.byref, value.fltVal);
    case VT_R8:
      return store(place.byref, value.dblVal);
    default:
      throw ComError(DISP_E_TYPEMISMATCH);
  }
}

}  // namespace

void readArgument(const VARIANT& value, std::int16_t& result) {
  result = converted(value, VT_I2).get().iVal;
}

void readArgument(const VARIANT& value, std::int32_t& result) {
  result = converted(value, VT_I4).get().lVal;
}

void readArgument(const VARIANT& value, bool& result) {
  result = converted(value, VT_BOOL).get().boolVal != VARIANT_FALSE;
}

void readArgument(const VARIANT& value, std::wstring& result) {
  if (const auto text = textIn(value)) {
    result = *text;
    return;
  }
  OwnedVariant text = converted(value, VT_BSTR);
  const ScopeExit wiping([&] { text.wipeText(); });
  result = textIn(text.get()).value_or(L"");
}

void readArgument(const VARIANT& value, ComPtr<IUnknown>& result) {
  const VARIANT& object = target(value);
  switch (object.vt) {
    case VT_DISPATCH:
    case VT_UNKNOWN:
      result = ComPtr<IUnknown>::sharing(object.punkVal);
      break;
    case VT_BYREF | VT_DISPATCH:
    case VT_BYREF | VT_UNKNOWN:
      result = ComPtr<IUnknown>::sharing(*object.ppunkVal);
      break;
    default:
      throw ComError(DISP_E_TYPEMISMATCH);
  }
}

void readArgument(const VARIANT& value, const VARIANT*& result) { result = &target(value); }

Arguments::Arguments(const DISPPARAMS& passed, const Member& member)
    : passed_(passed),
      places_(std::span(storage_).first(std::min(member.parameters.size(), kMaxParameters))) {
  storage_.fill(kNone);
  if (passed.cNamedArgs > 0 && comServer().typeLibrary == nullptr) {
    throw ComError(DISP_E_NONAMEDARGS);
  }
  if (passed.cNamedArgs > passed.cArgs || passed.cArgs > places_.size()) {
    throw ComError(DISP_E_BADPARAMCOUNT);
  }
  const bool noValues = passed.cArgs > 0 && passed.rgvarg == nullptr;
  const bool noNames = passed.cNamedArgs > 0 && passed.rgdispidNamedArgs == nullptr;
  if (noValues || noNames) throw ComError(comServer().missingArray);
  for (UINT i = 0; i < passed.cArgs; ++i) {
    const HRESULT status = checkReferences(passed.rgvarg[i]);
    if (FAILED(status)) throw ComError(status, i);
  }
  for (std::size_t i = passed.cNamedArgs; i < passed.cArgs; ++i) {
    places_[passed.cArgs - 1 - i] = i;
  }
  for (std::size_t i = 0; i < passed.cNamedArgs; ++i) placeNamed(i, member);
  checkComplete(member);
}

void Arguments::placeNamed(std::size_t index, const Member& member) {
  const DISPID name = passed_.rgdispidNamedArgs[index];
  const bool isPut = member.kind == MemberKind::Put || member.kind == MemberKind::PutRef;
  const bool known = isPut ? name == DISPID_PROPERTYPUT
                           : name >= 0 && static_cast<std::size_t>(name) < places_.size();
  const std::size_t parameter = isPut ? places_.size() - 1 : static_cast<std::size_t>(name);
  if (!known || places_[parameter] != kNone) {
    throw ComError(DISP_E_PARAMNOTFOUND, static_cast<UINT>(index));
  }
  places_[parameter] = index;
}

void Arguments::checkComplete(const Member& member) const {
  const std::size_t required = places_.size() - member.optional;
  for (std::size_t i = 0; i < required; ++i) {
    if (!has(i)) {
      throw ComError(passed_.cNamedArgs == 0 ? DISP_E_BADPARAMCOUNT : DISP_E_PARAMNOTOPTIONAL);
    }
    if (isMissing(passed_.rgvarg[places_[i]])) {
      throw ComError(DISP_E_PARAMNOTOPTIONAL, static_cast<UINT>(places_[i]));
    }
  }
}

void Arguments::put(std::size_t parameter, OwnedVariant value) const {
  const std::size_t place = places_[parameter];
  if (place == kNone) return;
  const VARIANT& argument = passed_.rgvarg[place];
  if ((argument.vt & VT_BYREF) == 0) return;
  if (argument.vt == (VT_BYREF | VT_VARIANT)) {
    VariantClear(argument.pvarVal);
    *argument.pvarVal = value.release();
    return;
  }
  try {
    const auto type = static_cast<VARTYPE>(argument.vt & ~VT_BYREF);
    OwnedVariant fitting = converted(value.get(), type);
    if (type == VT_BSTR) {
      SysFreeString(std::exchange(*argument.pbstrVal, fitting.release().bstrVal));
    } else {
      storeTyped(argument, fitting.get());
    }
  } catch (const ComError& error) {
    throw ComError(error.result(), static_cast<UINT>(place));
  }
}

}  // namespace tlpacscfg
