#pragma once

#include <windows.h>

#include <oleauto.h>

#include <cstdint>
#include <new>
#include <string_view>
#include <utility>

namespace tlpacscfg {

/// Owns one VARIANT. Windows only.
class OwnedVariant {
 public:
  OwnedVariant() { VariantInit(&value_); }
  explicit OwnedVariant(std::wstring_view text) : OwnedVariant() {
    value_.bstrVal = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
    if (value_.bstrVal == nullptr) throw std::bad_alloc();
    value_.vt = VT_BSTR;
  }
  explicit OwnedVariant(bool value) : OwnedVariant() {
    value_.vt = VT_BOOL;
    value_.boolVal = value ? VARIANT_TRUE : VARIANT_FALSE;
  }
  explicit OwnedVariant(std::int16_t number) : OwnedVariant() {
    value_.vt = VT_I2;
    value_.iVal = number;
  }
  /// A pointer to characters would be a truth value.
  explicit OwnedVariant(const void*) = delete;
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
  VARIANT release() {
    VARIANT empty;
    VariantInit(&empty);
    return std::exchange(value_, empty);
  }

  /// The text as an argument that the callee may replace. Only for a variant that holds a text.
  VARIANT byReference() {
    VARIANT reference;
    VariantInit(&reference);
    reference.vt = VT_BYREF | VT_BSTR;
    reference.pbstrVal = &value_.bstrVal;
    return reference;
  }

 private:
  VARIANT value_;
};

}  // namespace tlpacscfg
