#include "com/host_object.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>

#include "support/text.h"

namespace tlpacscfg::test {
namespace {

std::wstring take(BSTR text) {
  std::wstring result(text ? text : L"", SysStringLen(text));
  SysFreeString(text);
  return result;
}

std::wstring currentErrorInfo() {
  ComPtr<IErrorInfo> info;
  if (GetErrorInfo(0, info.out()) != S_OK) return {};
  BSTR description = nullptr;
  info->GetDescription(&description);
  return take(description);
}

std::vector<VARIANT> reversed(ArgumentList arguments) {
  std::vector<VARIANT> values;
  for (const Argument& argument : arguments) values.push_back(argument.get());
  std::reverse(values.begin(), values.end());
  return values;
}

}  // namespace

Argument::Argument(int number) {
  VARIANT& value = *value_.out();
  value.vt = VT_I4;
  value.lVal = number;
}

Argument::Argument(double number) {
  VARIANT& value = *value_.out();
  value.vt = VT_R8;
  value.dblVal = number;
}

Argument::Argument(const HostObject& object) {
  VARIANT& value = *value_.out();
  value.vt = VT_DISPATCH;
  value.pdispVal = ComPtr<IDispatch>::sharing(object.get()).detach();
}

VARIANT ofType(int type) {
  VARIANT value{};
  value.vt = static_cast<VARTYPE>(type);
  return value;
}

VARIANT emptyValue() { return ofType(VT_EMPTY); }
VARIANT nullValue() { return ofType(VT_NULL); }

VARIANT missingArgument() {
  VARIANT value = ofType(VT_ERROR);
  value.scode = DISP_E_PARAMNOTFOUND;
  return value;
}

VARIANT nothing() {
  VARIANT value = ofType(VT_DISPATCH);
  value.pdispVal = nullptr;
  return value;
}

VARIANT reference(VARIANT& target) {
  VARIANT value = ofType(VT_BYREF | VT_VARIANT);
  value.pvarVal = &target;
  return value;
}

VARIANT reference(std::int16_t& number) {
  VARIANT value = ofType(VT_BYREF | VT_I2);
  value.piVal = &number;
  return value;
}

VARIANT reference(std::int32_t& number) {
  VARIANT value = ofType(VT_BYREF | VT_I4);
  value.byref = &number;
  return value;
}

VARIANT reference(BSTR& text) {
  VARIANT value = ofType(VT_BYREF | VT_BSTR);
  value.pbstrVal = &text;
  return value;
}

std::wstring Outcome::text() const {
  EXPECT_EQ(nameOf(result), "S_OK");
  EXPECT_EQ(type(), VT_BSTR);
  if (type() != VT_BSTR) return {};
  return std::wstring(value.get().bstrVal ? value.get().bstrVal : L"",
                      SysStringLen(value.get().bstrVal));
}

std::int32_t Outcome::number() const {
  EXPECT_EQ(nameOf(result), "S_OK");
  switch (type()) {
    case VT_UI1:
      return value.get().bVal;
    case VT_I2:
      return value.get().iVal;
    case VT_I4:
      return value.get().lVal;
    default:
      ADD_FAILURE() << "no whole number: type " << type();
      return 0;
  }
}

bool Outcome::truth() const {
  EXPECT_EQ(nameOf(result), "S_OK");
  EXPECT_EQ(type(), VT_BOOL);
  return value.get().boolVal == VARIANT_TRUE;
}

HostObject Outcome::object() const {
  EXPECT_EQ(nameOf(result), "S_OK");
  EXPECT_EQ(type(), VT_DISPATCH);
  if (type() != VT_DISPATCH) return HostObject(nullptr);
  return HostObject(ComPtr<IDispatch>::sharing(value.get().pdispVal));
}

HostObject HostObject::create(const wchar_t* progId) {
  CLSID id{};
  EXPECT_EQ(nameOf(CLSIDFromProgID(progId, &id)), "S_OK");
  ComPtr<IDispatch> object;
  EXPECT_EQ(nameOf(CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch,
                                    reinterpret_cast<void**>(object.out()))),
            "S_OK");
  return HostObject(object);
}

DISPID HostObject::idOf(const std::wstring& member) const {
  std::wstring name = member;
  LPOLESTR names = name.data();
  DISPID id = DISPID_UNKNOWN;
  object_->GetIDsOfNames(IID_NULL, &names, 1, LOCALE_USER_DEFAULT, &id);
  return id;
}

Outcome HostObject::invoke(DISPID id, WORD flags, std::vector<VARIANT> reversed,
                           std::vector<DISPID> names) const {
  return invokeWith(id, flags,
                    DISPPARAMS{reversed.data(), names.data(), static_cast<UINT>(reversed.size()),
                               static_cast<UINT>(names.size())});
}

Outcome HostObject::invokeWith(DISPID id, WORD flags, DISPPARAMS parameters) const {
  constexpr UINT kNone = 0xBAD;
  EXCEPINFO exception{};
  UINT badArgument = kNone;
  SetErrorInfo(0, nullptr);
  Outcome outcome;
  outcome.result = object_->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &parameters,
                                   outcome.value.out(), &exception, &badArgument);
  outcome.scode = exception.scode;
  outcome.source = take(exception.bstrSource);
  outcome.description = take(exception.bstrDescription);
  SysFreeString(exception.bstrHelpFile);
  if (badArgument != kNone) outcome.badArgument = badArgument;
  outcome.errorInfo = currentErrorInfo();
  return outcome;
}

Outcome HostObject::get(const std::wstring& member, ArgumentList arguments) const {
  return invoke(idOf(member), DISPATCH_PROPERTYGET, reversed(arguments));
}

Outcome HostObject::put(const std::wstring& member, const Argument& value) const {
  return invoke(idOf(member), DISPATCH_PROPERTYPUT, {value.get()}, {DISPID_PROPERTYPUT});
}

Outcome HostObject::putRef(const std::wstring& member, const Argument& value) const {
  return invoke(idOf(member), DISPATCH_PROPERTYPUTREF, {value.get()}, {DISPID_PROPERTYPUT});
}

Outcome HostObject::call(const std::wstring& member, ArgumentList arguments) const {
  return invoke(idOf(member), DISPATCH_METHOD, reversed(arguments));
}

bool areSame(const HostObject& first, const HostObject& second) {
  ComPtr<IUnknown> identities[2];
  first.get()->QueryInterface(IID_IUnknown, reinterpret_cast<void**>(identities[0].out()));
  second.get()->QueryInterface(IID_IUnknown, reinterpret_cast<void**>(identities[1].out()));
  return identities[0].get() == identities[1].get();
}

std::string nameOf(HRESULT result) {
  switch (result) {
    case S_OK:
      return "S_OK";
    case S_FALSE:
      return "S_FALSE";
    case E_POINTER:
      return "E_POINTER";
    case E_INVALIDARG:
      return "E_INVALIDARG";
    case E_NOINTERFACE:
      return "E_NOINTERFACE";
    case DISP_E_BADINDEX:
      return "DISP_E_BADINDEX";
    case DISP_E_BADPARAMCOUNT:
      return "DISP_E_BADPARAMCOUNT";
    case DISP_E_EXCEPTION:
      return "DISP_E_EXCEPTION";
    case DISP_E_MEMBERNOTFOUND:
      return "DISP_E_MEMBERNOTFOUND";
    case DISP_E_OVERFLOW:
      return "DISP_E_OVERFLOW";
    case DISP_E_PARAMNOTFOUND:
      return "DISP_E_PARAMNOTFOUND";
    case DISP_E_PARAMNOTOPTIONAL:
      return "DISP_E_PARAMNOTOPTIONAL";
    case DISP_E_TYPEMISMATCH:
      return "DISP_E_TYPEMISMATCH";
    case DISP_E_UNKNOWNINTERFACE:
      return "DISP_E_UNKNOWNINTERFACE";
    case DISP_E_UNKNOWNNAME:
      return "DISP_E_UNKNOWNNAME";
    case CLASS_E_NOAGGREGATION:
      return "CLASS_E_NOAGGREGATION";
    case CLASS_E_CLASSNOTAVAILABLE:
      return "CLASS_E_CLASSNOTAVAILABLE";
    default:
      break;
  }
  char text[16];
  std::snprintf(text, sizeof(text), "0x%08lX", static_cast<unsigned long>(result));
  return text;
}

}  // namespace tlpacscfg::test
