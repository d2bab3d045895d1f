#include <windows.h>

#include <olectl.h>

#include <array>
#include <string>

#include "client/com_client.h"
#include "client/guarded.h"
#include "automation/com_ptr.h"

extern "C" IMAGE_DOS_HEADER __ImageBase;

namespace tlpacscfg::client {
namespace {

// {40414A13-F055-4316-AF2D-8813F074449E}
constexpr CLSID kClassId = {
    0x40414A13, 0xF055, 0x4316, {0xAF, 0x2D, 0x88, 0x13, 0xF0, 0x74, 0x44, 0x9E}};
constexpr const wchar_t* kClassKey = L"CLSID\\{40414A13-F055-4316-AF2D-8813F074449E}";
constexpr const wchar_t* kClassText = L"{40414A13-F055-4316-AF2D-8813F074449E}";
constexpr const wchar_t* kProgId = L"TlCommClient.clsTlCommClient";

/// One object without state that lives as long as the module.
class Factory final : public IClassFactory {
 public:
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** result) override {
    if (result == nullptr) return E_POINTER;
    *result = nullptr;
    if (id != IID_IUnknown && id != IID_IClassFactory) return E_NOINTERFACE;
    *result = static_cast<IClassFactory*>(this);
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override {
    ++moduleUses;
    return 2;
  }
  ULONG STDMETHODCALLTYPE Release() override {
    --moduleUses;
    return 1;
  }

  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID id, void** result) override {
    if (result == nullptr) return E_POINTER;
    *result = nullptr;
    if (outer != nullptr) return CLASS_E_NOAGGREGATION;
    return guarded([&] {
      const auto object = tlpacscfg::ComPtr<ComClient>::owning(new ComClient);
      return object->QueryInterface(id, result);
    });
  }
  HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override {
    moduleUses += lock ? 1 : -1;
    return S_OK;
  }
};

Factory factory;

bool setText(const std::wstring& key, const wchar_t* name, const wchar_t* text) {
  const auto bytes = static_cast<DWORD>((std::char_traits<wchar_t>::length(text) + 1) * 2);
  return RegSetKeyValueW(HKEY_CLASSES_ROOT, key.c_str(), name, REG_SZ, text, bytes) ==
         ERROR_SUCCESS;
}

bool registerClass() {
  std::array<wchar_t, 32768> path{};
  const auto module = reinterpret_cast<HMODULE>(&__ImageBase);
  const DWORD length = GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size()));
  if (length == 0 || length == path.size()) return false;
  const std::wstring key = kClassKey;
  return setText(key, nullptr, kProgId) && setText(key + L"\\ProgID", nullptr, kProgId) &&
         setText(key + L"\\InprocServer32", nullptr, path.data()) &&
         setText(key + L"\\InprocServer32", L"ThreadingModel", L"Apartment") &&
         setText(kProgId, nullptr, kProgId) &&
         setText(std::wstring(kProgId) + L"\\CLSID", nullptr, kClassText);
}

bool removeKey(const wchar_t* key) {
  const LSTATUS status = RegDeleteTreeW(HKEY_CLASSES_ROOT, key);
  return status == ERROR_SUCCESS || status == ERROR_FILE_NOT_FOUND;
}

}  // namespace
}  // namespace tlpacscfg::client

using namespace tlpacscfg::client;

STDAPI DllGetClassObject(REFCLSID classId, REFIID id, void** result) {
  if (result == nullptr) return E_POINTER;
  *result = nullptr;
  return classId == kClassId ? factory.QueryInterface(id, result) : CLASS_E_CLASSNOTAVAILABLE;
}

STDAPI DllCanUnloadNow() { return moduleUses == 0 ? S_OK : S_FALSE; }

STDAPI DllRegisterServer() {
  return guarded([] { return registerClass() ? S_OK : SELFREG_E_CLASS; });
}

STDAPI DllUnregisterServer() {
  const bool classRemoved = removeKey(kClassKey);
  return removeKey(kProgId) && classRemoved ? S_OK : SELFREG_E_CLASS;
}
