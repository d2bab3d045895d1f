#include "automation/late_bound.h"

#include <string>
#include <vector>

#include "support/runtime_error.h"

namespace tlpacscfg {
namespace {

constexpr std::int32_t kNoSuchMember = 438;
constexpr const wchar_t* kNoReason = L"Automation error";

/// Owns the texts of an EXCEPINFO.
class ExceptionInfo {
 public:
  ExceptionInfo() = default;
  ~ExceptionInfo() {
    SysFreeString(info_.bstrSource);
    SysFreeString(info_.bstrDescription);
    SysFreeString(info_.bstrHelpFile);
  }
  ExceptionInfo(const ExceptionInfo&) = delete;
  ExceptionInfo& operator=(const ExceptionInfo&) = delete;

  EXCEPINFO* out() { return &info_; }

  RunTimeError error() {
    if (info_.pfnDeferredFillIn) info_.pfnDeferredFillIn(&info_);
    const std::wstring description(info_.bstrDescription ? info_.bstrDescription : kNoReason);
    return RunTimeError(number(), description);
  }

 private:
  /// Classic error numbers arrive as control errors: 0x800A0000 plus the number.
  std::int32_t number() const {
    if (info_.scode == 0) return info_.wCode;
    return HRESULT_FACILITY(info_.scode) == FACILITY_CONTROL ? HRESULT_CODE(info_.scode)
                                                             : info_.scode;
  }

  EXCEPINFO info_{};
};

}  // namespace

LateBound::LateBound(const wchar_t* progId) {
  CLSID classId{};
  HRESULT status = CLSIDFromProgID(progId, &classId);
  if (SUCCEEDED(status)) {
    status = CoCreateInstance(classId, nullptr, CLSCTX_SERVER, IID_IDispatch,
                              reinterpret_cast<void**>(object_.out()));
  }
  if (FAILED(status) || !object_) raise(ErrorNumber::CannotCreateObject);
}

OwnedVariant LateBound::call(const wchar_t* method,
                             std::initializer_list<VARIANT> arguments) const {
  // A late-bound caller cannot distinguish a method with a result from a property with arguments:
  // objects expect both flags.
  return invoke(method, DISPATCH_METHOD | DISPATCH_PROPERTYGET, arguments);
}

void LateBound::run(const wchar_t* method, std::initializer_list<VARIANT> arguments) const {
  invoke(method, DISPATCH_METHOD, arguments);
}

OwnedVariant LateBound::get(const wchar_t* property) const {
  return invoke(property, DISPATCH_PROPERTYGET, {});
}

void LateBound::put(const wchar_t* property, const VARIANT& value) const {
  invoke(property, DISPATCH_PROPERTYPUT, std::span(&value, 1));
}

OwnedVariant LateBound::invoke(const wchar_t* member, WORD kind,
                               std::span<const VARIANT> arguments) const {
  std::wstring name = member;
  LPOLESTR names = name.data();
  DISPID id = DISPID_UNKNOWN;
  HRESULT status = object_->GetIDsOfNames(IID_NULL, &names, 1, LOCALE_INVARIANT, &id);
  if (FAILED(status)) {
    throw RunTimeError(kNoSuchMember, L"Object doesn't support this property or method");
  }

  // COM takes arguments last to first.
  std::vector<VARIANT> reversed(arguments.rbegin(), arguments.rend());
  DISPID valueName = DISPID_PROPERTYPUT;
  DISPPARAMS parameters{};
  parameters.rgvarg = reversed.data();
  parameters.cArgs = static_cast<UINT>(reversed.size());
  if (kind == DISPATCH_PROPERTYPUT) {
    parameters.rgdispidNamedArgs = &valueName;
    parameters.cNamedArgs = 1;
  }

  OwnedVariant result;
  ExceptionInfo exception;
  UINT badArgument = 0;
  status = object_->Invoke(id, IID_NULL, LOCALE_INVARIANT, kind, &parameters, result.out(),
                           exception.out(), &badArgument);
  if (status == DISP_E_EXCEPTION) throw exception.error();
  if (status == DISP_E_TYPEMISMATCH) raise(ErrorNumber::TypeMismatch);
  if (status == DISP_E_OVERFLOW) raise(ErrorNumber::Overflow);
  if (FAILED(status)) throw RunTimeError(status, kNoReason);
  return result;
}

}  // namespace tlpacscfg
