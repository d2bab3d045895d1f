// Runs the configuration component from a program that knows nothing of it but names:
//
//   plain-host NAME=VALUE ... [--no-form]
//
// Sets the properties of TLPACSCFG.clsConfig, calls Init, prints the description of every
// configuration, and shows the windows unless --no-form is given. Ends with 0 only when Init and
// ShowForm succeeded.
//
// Needs only the headers of Windows:
//   x86_64-w64-mingw32-g++-posix -std=c++17 -municode -static plain_host.cpp -lole32 -loleaut32
//   -luuid cl /std:c++17 /EHsc plain_host.cpp ole32.lib oleaut32.lib

#include <windows.h>

#include <oleauto.h>

#include <cstdio>
#include <stdexcept>
#include <string>
#include <utility>

namespace {

/// A VARIANT that releases what it holds.
class Value {
 public:
  Value() { VariantInit(&variant_); }
  explicit Value(const std::wstring& text) : Value() {
    variant_.vt = VT_BSTR;
    variant_.bstrVal = SysAllocString(text.c_str());
  }
  explicit Value(long number) : Value() {
    variant_.vt = VT_I4;
    variant_.lVal = number;
  }
  Value(Value&& other) noexcept : variant_(other.variant_) { VariantInit(&other.variant_); }
  Value& operator=(Value&&) = delete;
  ~Value() { VariantClear(&variant_); }

  VARIANT* get() { return &variant_; }
  bool isEmpty() const { return variant_.vt == VT_EMPTY; }
  IDispatch* object() const { return variant_.vt == VT_DISPATCH ? variant_.pdispVal : nullptr; }

  std::wstring text() const {
    Value text;
    // The flag gives True and False instead of -1 and 0.
    if (FAILED(VariantChangeType(text.get(), const_cast<VARIANT*>(&variant_), VARIANT_ALPHABOOL,
                                 VT_BSTR))) {
      return {};
    }
    return {text.variant_.bstrVal, SysStringLen(text.variant_.bstrVal)};
  }

 private:
  VARIANT variant_;
};

/// What a script does for `object.name`, `object.name(argument)` and `object.name = argument`:
/// looks the name up, then invokes it. Throws std::runtime_error with the component's own words.
Value invoke(IDispatch* object, std::wstring name, WORD kind, Value argument = {}) {
  if (object == nullptr) throw std::runtime_error("There is no object.");
  DISPID id = DISPID_UNKNOWN;
  wchar_t* names = name.data();
  if (FAILED(object->GetIDsOfNames(IID_NULL, &names, 1, LOCALE_USER_DEFAULT, &id))) {
    throw std::runtime_error("There is no such member.");
  }
  DISPID put = DISPID_PROPERTYPUT;
  DISPPARAMS arguments{};
  if (!argument.isEmpty()) {
    arguments.rgvarg = argument.get();
    arguments.cArgs = 1;
  }
  if (kind == DISPATCH_PROPERTYPUT) {
    arguments.rgdispidNamedArgs = &put;
    arguments.cNamedArgs = 1;
  }
  Value result;
  EXCEPINFO failure{};
  const HRESULT status = object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, kind, &arguments,
                                        result.get(), &failure, nullptr);
  if (SUCCEEDED(status)) return result;
  char reason[512] = "";
  std::snprintf(reason, sizeof(reason), "The call failed: 0x%08lX.",
                static_cast<unsigned long>(status));
  if (failure.bstrDescription != nullptr) {
    WideCharToMultiByte(CP_UTF8, 0, failure.bstrDescription, -1, reason, sizeof(reason), nullptr,
                        nullptr);
  }
  SysFreeString(failure.bstrSource);
  SysFreeString(failure.bstrDescription);
  SysFreeString(failure.bstrHelpFile);
  throw std::runtime_error(reason);
}

Value get(IDispatch* object, const wchar_t* name) {
  return invoke(object, name, DISPATCH_PROPERTYGET);
}

Value call(IDispatch* object, const wchar_t* name) { return invoke(object, name, DISPATCH_METHOD); }

void print(const std::wstring& text) {
  char bytes[2048];
  const int length = WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()),
                                         bytes, sizeof(bytes), nullptr, nullptr);
  std::printf("%.*s\n", length, bytes);
}

void printConfigurations(IDispatch* config) {
  const Value collection = get(config, L"colPACSConfig");
  const Value items = get(collection.object(), L"ColPACSConfigs");
  const long count = std::stol(get(items.object(), L"Count").text());
  // The first one stands for no configuration.
  for (long position = 2; position <= count; ++position) {
    const Value record =
        invoke(items.object(), L"Item", DISPATCH_METHOD | DISPATCH_PROPERTYGET, Value(position));
    print(get(record.object(), L"configID").text() + L" " +
          get(record.object(), L"Description").text());
  }
}

bool run(IDispatch* config, int count, wchar_t** arguments) {
  bool showForm = true;
  print(L"TLPACSCFG " + call(config, L"Version").text());
  for (int i = 1; i < count; ++i) {
    const std::wstring argument = arguments[i];
    const std::size_t equals = argument.find(L'=');
    if (argument == L"--no-form") {
      showForm = false;
    } else if (equals == argument.npos) {
      throw std::runtime_error("NAME=VALUE or --no-form expected.");
    } else {
      invoke(config, argument.substr(0, equals), DISPATCH_PROPERTYPUT,
             Value(argument.substr(equals + 1)));
    }
  }
  const std::wstring initialized = call(config, L"Init").text();
  print(L"Init returned " + initialized);
  if (initialized != L"True") return false;
  printConfigurations(config);
  if (!showForm) return true;
  const std::wstring code = call(config, L"ShowForm").text();
  print(L"ShowForm returned " + code);
  return code == L"0";
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
  // The windows belong to the thread that calls Init and ShowForm.
  if (FAILED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) return 1;
  CLSID id;
  IDispatch* config = nullptr;
  bool succeeded = false;
  if (FAILED(CLSIDFromProgID(L"TLPACSCFG.clsConfig", &id)) ||
      FAILED(CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch,
                              reinterpret_cast<void**>(&config)))) {
    print(
        L"TLPACSCFG.clsConfig cannot be created. Register the component of this program's bitness "
        L"first.");
  } else {
    try {
      succeeded = run(config, count, arguments);
    } catch (const std::exception& error) {
      std::puts(error.what());
    }
    config->Release();
  }
  CoUninitialize();
  return succeeded ? 0 : 1;
}
