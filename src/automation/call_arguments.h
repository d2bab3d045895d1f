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
void readArgument(const VARIANT& value, std::int16_t& result);
void readArgument(const VARIANT& value, std::int32_t& result);
void readArgument(const VARIANT& value, bool& result);
void readArgument(const VARIANT& value, std::wstring& result);
/// Null for Nothing.
void readArgument(const VARIANT& value, ComPtr<IUnknown>& result);
/// The argument itself; a reference to a VARIANT is followed.
void readArgument(const VARIANT& value, const VARIANT*& result);

template <class Core>
void readArgument(const VARIANT& value, std::shared_ptr<Core>& result) {
  ComPtr<IUnknown> object;
  readArgument(value, object);
  if (!object) return;
  const std::shared_ptr<void> core = unwrapObject(object, comClassOf<Core>());
  if (!core) throw ComError(DISP_E_TYPEMISMATCH);
  result = std::static_pointer_cast<Core>(core);
}

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
    Value value{};
    try {
      readArgument(passed_.rgvarg[place], value);
    } catch (const ComError& error) {
      throw ComError(error.result(), static_cast<UINT>(place));
    }
    return value;
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
