#pragma once

#include <windows.h>

#include <oleauto.h>

#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>
#include <vector>

#include "automation/com_ptr.h"
#include "automation/owned_variant.h"

namespace tlpacscfg::test {

class HostObject;

/// An argument of a late-bound call.
class Argument {
 public:
  Argument(int number);
  Argument(std::int16_t number) : value_(number) {}
  Argument(bool value) : value_(value) {}
  Argument(double number);
  Argument(const wchar_t* text) : value_(std::wstring_view(text)) {}
  Argument(const std::wstring& text) : value_(std::wstring_view(text)) {}
  Argument(const HostObject& object);
  /// Passed as it is; the caller keeps ownership.
  Argument(const VARIANT& value) : borrowed_(value) {}

  const VARIANT& get() const { return borrowed_ ? *borrowed_ : value_.get(); }

 private:
  OwnedVariant value_;
  std::optional<VARIANT> borrowed_;
};

using ArgumentList = std::initializer_list<Argument>;

/// All bits zero except the type.
VARIANT ofType(int type);
VARIANT emptyValue();
VARIANT nullValue();
VARIANT missingArgument();
VARIANT nothing();
VARIANT reference(VARIANT& value);
VARIANT reference(std::int16_t& number);
VARIANT reference(std::int32_t& number);
VARIANT reference(BSTR& text);

/// Everything that a call returns to the host.
struct Outcome {
  HRESULT result = E_UNEXPECTED;
  OwnedVariant value;
  SCODE scode = S_OK;
  std::wstring source;
  std::wstring description;
  std::optional<UINT> badArgument;
  /// The description from GetErrorInfo; empty when there is none.
  std::wstring errorInfo;

  VARTYPE type() const { return value.get().vt; }
  /// Fail the test when the value is of another type.
  std::wstring text() const;
  std::int32_t number() const;
  bool truth() const;
  HostObject object() const;
};

/// An object called late-bound, the way a host does it.
class HostObject {
 public:
  explicit HostObject(ComPtr<IDispatch> object) : object_(std::move(object)) {}
  /// Fails the test when the class is not registered.
  static HostObject create(const wchar_t* progId);

  IDispatch* get() const { return object_.get(); }
  bool isNothing() const { return !object_; }
  void release() { object_ = nullptr; }

  /// DISPID_UNKNOWN when there is none.
  DISPID idOf(const std::wstring& member) const;

  /// Arguments in the order of DISPPARAMS; the names belong to the first of them.
  Outcome invoke(DISPID id, WORD flags, std::vector<VARIANT> reversed,
                 std::vector<DISPID> names = {}) const;
  /// The same with counts that may contradict the arrays.
  Outcome invokeWith(DISPID id, WORD flags, DISPPARAMS parameters) const;

  Outcome get(const std::wstring& member, ArgumentList arguments = {}) const;
  Outcome put(const std::wstring& member, const Argument& value) const;
  Outcome putRef(const std::wstring& member, const Argument& value) const;
  Outcome call(const std::wstring& member, ArgumentList arguments = {}) const;

 private:
  ComPtr<IDispatch> object_;
};

/// Whether both are the same object by the rules of COM.
bool areSame(const HostObject& first, const HostObject& second);

/// For example "DISP_E_OVERFLOW".
std::string nameOf(HRESULT result);

}  // namespace tlpacscfg::test
