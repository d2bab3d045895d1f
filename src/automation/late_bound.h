#pragma once

#include <windows.h>

#include <oaidl.h>

#include <memory>
#include <span>

#include "automation/owned_variant.h"

namespace tlpacscfg {

/// A COM object whose members are called by their names. Every failure is a RunTimeError: the
/// number and the description that the object gave, or the result code of the call.
class LateBound {
 public:
  /// The object registered under the ProgID; throws CannotCreateObject.
  explicit LateBound(const wchar_t* progId);

  /// A method with a result. Arguments in the order of the method's parameters; they stay the
  /// caller's.
  OwnedVariant call(const wchar_t* method, std::initializer_list<VARIANT> arguments) const;
  /// A method without one.
  void run(const wchar_t* method, std::initializer_list<VARIANT> arguments) const;
  OwnedVariant get(const wchar_t* property) const;
  void put(const wchar_t* property, const VARIANT& value) const;

 private:
  struct Release {
    void operator()(IDispatch* object) const { object->Release(); }
  };

  OwnedVariant invoke(const wchar_t* member, WORD kind, std::span<const VARIANT> arguments) const;

  std::unique_ptr<IDispatch, Release> object_;
};

}  // namespace tlpacscfg
