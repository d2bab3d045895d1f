#pragma once

#include <windows.h>

#include <oaidl.h>

#include <span>

#include "automation/com_ptr.h"
#include "automation/owned_variant.h"

namespace tlpacscfg {

/// A COM object whose members are called by name. Every failure throws RunTimeError with the number
/// and description that the object gave, or with the HRESULT of the call.
class LateBound {
 public:
  /// The object registered under the ProgID; throws CannotCreateObject.
  explicit LateBound(const wchar_t* progId);

  /// Calls a method with a result. Arguments are in the order of the method's parameters; the
  /// caller keeps ownership.
  OwnedVariant call(const wchar_t* method, std::initializer_list<VARIANT> arguments) const;
  /// Calls a method without a result.
  void run(const wchar_t* method, std::initializer_list<VARIANT> arguments) const;
  OwnedVariant get(const wchar_t* property) const;
  void put(const wchar_t* property, const VARIANT& value) const;

 private:
  OwnedVariant invoke(const wchar_t* member, WORD kind, std::span<const VARIANT> arguments) const;

  ComPtr<IDispatch> object_;
};

}  // namespace tlpacscfg
