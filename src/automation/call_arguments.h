#pragma once

#include <oaidl.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>

#include "automation/com_class.h"
#include "automation/com_error.h"
#include "automation/owned_variant.h"

namespace tlpacscfg {

/// A VARIANT as the C++ type of a parameter; throws ComError with DISP_E_TYPEMISMATCH or
/// DISP_E_OVERFLOW. A text is copied once, into the result.
template <class Value>
struct ArgumentConverter {
  static Value convert(const VARIANT& value);
};

template <>
std::int16_t ArgumentConverter<std::int16_t>::convert(const VARIANT& value);
template <>
std::int32_t ArgumentConverter<std::int32_t>::convert(const VARIANT& value);
template <>
bool ArgumentConverter<bool>::convert(const VARIANT& value);
template <>
std::wstring ArgumentConverter<std::wstring>::convert(const VARIANT& value);
/// Null for Nothing.
template <>
ComPtr<IUnknown> ArgumentConverter<ComPtr<IUnknown>>::convert(const VARIANT& value);
/// The argument itself; a reference to a VARIANT is followed.
template <>
const VARIANT* ArgumentConverter<const VARIANT*>::convert(const VARIANT& value);

template <class Core>
struct ArgumentConverter<std::shared_ptr<Core>> {
  static std::shared_ptr<Core> convert(const VARIANT& value) {
    const auto object = ArgumentConverter<ComPtr<IUnknown>>::convert(value);
    if (!object) return nullptr;
    const std::shared_ptr<void> core = unwrapObject(object, comClassOf<Core>());
    if (!core) throw ComError(DISP_E_TYPEMISMATCH);
    return std::static_pointer_cast<Core>(core);
  }
};

/// The arguments of one call in the order of the parameters, whichever way the caller passed them:
/// by position (last one first), by name, or left out.
class Arguments {
 public:
  /// Throws ComError when they do not fit the member's parameters.
  Arguments(const DISPPARAMS& passed, const Member& member);
  Arguments(const Arguments&) = delete;
  Arguments& operator=(const Arguments&) = delete;

  bool has(std::size_t parameter) const { return places_[parameter] != kNone; }

  template <class Value>
  Value get(std::size_t parameter) const {
    const std::size_t place = places_[parameter];
    try {
      return ArgumentConverter<Value>::convert(passed_.rgvarg[place]);
    } catch (const ComError& error) {
      throw ComError(error.result(), static_cast<UINT>(place));
    }
  }

  /// Stores a result in a by-reference argument; any other argument is left alone.
  void put(std::size_t parameter, OwnedVariant value) const;

 private:
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);
  static constexpr std::size_t kMaxParameters = 64;

  void placeNamed(std::size_t index, const Member& member);
  void checkComplete(const Member& member) const;

  const DISPPARAMS& passed_;
  /// For each parameter its index in DISPPARAMS::rgvarg. Needs no memory that a call could lack.
  std::array<std::size_t, kMaxParameters> storage_;
  std::span<std::size_t> places_;
};

}  // namespace tlpacscfg
