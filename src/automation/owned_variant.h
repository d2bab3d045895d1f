#pragma once

#include <windows.h>

#include <oleauto.h>

#include <cstdint>
#include <string_view>
#include <type_traits>
#include <utility>

#include "automation/com_ptr.h"

namespace tlpacscfg {

/// Owns one VARIANT.
class OwnedVariant {
 public:
  OwnedVariant() { VariantInit(&value_); }
  explicit OwnedVariant(std::wstring_view text);
  explicit OwnedVariant(bool value)
      : OwnedVariant(VT_BOOL, &VARIANT::boolVal, value ? VARIANT_TRUE : VARIANT_FALSE) {}
  explicit OwnedVariant(std::uint8_t number) : OwnedVariant(VT_UI1, &VARIANT::bVal, number) {}
  explicit OwnedVariant(std::int16_t number) : OwnedVariant(VT_I2, &VARIANT::iVal, number) {}
  explicit OwnedVariant(std::int32_t number) : OwnedVariant(VT_I4, &VARIANT::lVal, number) {}
  /// A null pointer becomes Nothing, not Empty.
  explicit OwnedVariant(ComPtr<IDispatch> object)
      : OwnedVariant(VT_DISPATCH, &VARIANT::pdispVal, object.detach()) {}
  explicit OwnedVariant(ComPtr<IUnknown> object)
      : OwnedVariant(VT_UNKNOWN, &VARIANT::punkVal, object.detach()) {}
  /// Without this, a pointer to characters would convert to bool.
  explicit OwnedVariant(const void*) = delete;
  /// All bits zero: Null, 0, False or an empty text, depending on the type.
  static OwnedVariant zero(VARTYPE type);

  OwnedVariant(OwnedVariant&& other) noexcept : OwnedVariant() { std::swap(value_, other.value_); }
  OwnedVariant& operator=(OwnedVariant&& other) noexcept {
    std::swap(value_, other.value_);
    return *this;
  }
  ~OwnedVariant() { VariantClear(&value_); }

  const VARIANT& get() const { return value_; }

  /// For an output parameter; the value held so far is cleared.
  VARIANT* out() {
    VariantClear(&value_);
    return &value_;
  }

  /// Transfers ownership to the caller.
  VARIANT release() { return std::exchange(value_, VARIANT{}); }

  /// A by-reference argument whose text the callee may replace. Only for a VT_BSTR.
  VARIANT byReference() {
    VARIANT reference{};
    reference.vt = VT_BYREF | VT_BSTR;
    reference.pbstrVal = &value_.bstrVal;
    return reference;
  }

  /// Overwrites the characters of a VT_BSTR with zeros.
  void wipeText();

 private:
  template <class Value>
  OwnedVariant(VARTYPE type, Value VARIANT::*member, std::type_identity_t<Value> value)
      : OwnedVariant() {
    value_.vt = type;
    value_.*member = value;
  }

  VARIANT value_;
};

}  // namespace tlpacscfg
