#pragma once

#include <oaidl.h>

#include <cstdint>
#include <string>

#include "automation/com_ptr.h"
#include "automation/owned_variant.h"
#include "automation/foreign_variant.h"

namespace tlpacscfg {

/// Owns one VARIANT of any type that the component hands out.
class Variant : public OwnedVariant {
 public:
  using OwnedVariant::OwnedVariant;
  explicit Variant(std::int32_t number);
  explicit Variant(std::uint8_t number);
  /// An object that is missing is Nothing, not Empty.
  explicit Variant(ComPtr<IDispatch> object);
  explicit Variant(ComPtr<IUnknown> object);
};

/// Overwrites the text that a value holds, if it is one.
void wipeText(Variant& value);

/// The value as another type, by rules that are the same in every locale. Truth values become the
/// words True and False. Throws ComError with DISP_E_TYPEMISMATCH or DISP_E_OVERFLOW.
Variant converted(const VARIANT& value, VARTYPE type);

bool isMissing(const VARIANT& value);

/// The C++ value of a VARIANT; throws as `converted` does. A text is copied once, into the result.
template <class Value>
Value fromVariant(const VARIANT& value);
template <>
std::int16_t fromVariant(const VARIANT& value);
template <>
std::int32_t fromVariant(const VARIANT& value);
template <>
bool fromVariant(const VARIANT& value);
template <>
std::wstring fromVariant(const VARIANT& value);
/// Nothing for an object that is missing; throws TypeMismatch for a value that is no object.
template <>
ComPtr<IUnknown> fromVariant(const VARIANT& value);

}  // namespace tlpacscfg
