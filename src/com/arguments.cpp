#include "com/arguments.h"

#include <oleauto.h>

#include <cstring>
#include <utility>

namespace tlpacscfg {
namespace {

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

Arguments::Arguments(const DISPPARAMS& passed, const Member& member)
    : passed_(passed), places_(member.parameters.size(), kNone) {
  if (passed.cNamedArgs > passed.cArgs || passed.cArgs > places_.size()) {
    throw ComError(DISP_E_BADPARAMCOUNT);
  }
  if (passed.cArgs > 0 && passed.rgvarg == nullptr) throw ComError(E_POINTER);
  if (passed.cNamedArgs > 0 && passed.rgdispidNamedArgs == nullptr) throw ComError(E_POINTER);
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

void Arguments::put(std::size_t parameter, Variant value) const {
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
    Variant fitting = converted(value.get(), type);
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
