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
  VARIANT value_;
};

}  // namespace tlpacscfg
