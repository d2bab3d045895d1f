#pragma once

#include <windows.h>

#include <oleauto.h>

#include <cstdint>
#include <string_view>
#include <utility>

#include "automation/com_ptr.h"

namespace tlpacscfg {

/// Owns one VARIANT.
class OwnedVariant {
 public:
  OwnedVariant() { VariantInit(&value_); }
  explicit OwnedVariant(std::wstring_view text);
  explicit OwnedVariant(bool value);
  explicit OwnedVariant(std::uint8_t number);
  explicit OwnedVariant(std::int16_t number);
  explicit OwnedVariant(std::int32_t number);
  /// A null pointer becomes Nothing, not Empty.
  explicit OwnedVariant(ComPtr<IDispatch> object);
  explicit OwnedVariant(ComPtr<IUnknown> object);
  /// A pointer to characters would be a truth value.
  explicit OwnedVariant(const void*) = delete;
  /// Zero or no value of this type, which owns nothing: VT_NULL, VT_I4, VT_BSTR...
  static OwnedVariant zero(VARTYPE type);

  OwnedVariant(OwnedVariant&& other) noexcept : OwnedVariant() { std::swap(value_, other.value_); }
  OwnedVariant& operator=(OwnedVariant&& other) noexcept {
    std::swap(value_, other.value_);
    return *this;
  }
  ~OwnedVariant() { VariantClear(&value_); }

  const VARIANT& get() const { return value_; }

  /// The place for a function to leave a value in.
  VARIANT* out() {
    VariantClear(&value_);
    return &value_;
  }

  /// Hands the value to the caller.
  VARIANT release() { return std::exchange(value_, VARIANT{}); }

  /// The text as an argument that the callee may replace. Only for a variant that holds a text.
  VARIANT byReference() {
    VARIANT reference{};
    reference.vt = VT_BYREF | VT_BSTR;
    reference.pbstrVal = &value_.bstrVal;
    return reference;
  }

  /// Overwrites the text that the variant holds, if it is one.
  void wipeText();

 private:
  VARIANT value_;
};

}  // namespace tlpacscfg
