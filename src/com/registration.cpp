#include "com/registration.h"

#include <oleauto.h>
#include <olectl.h>

#include <array>
#include <string>
#include <vector>

#include "com/com_error.h"
#include "com/component.h"
#include "com/creatable_classes.h"
#include "com/identities.h"
#include "support/handle_win.h"

namespace tlpacscfg {
namespace {

constexpr WORD kLibraryMajor = 1;
constexpr WORD kLibraryMinor = 0;
constexpr const wchar_t* kClassVersion = L".1";

/// One value below HKEY_CLASSES_ROOT; without a name the key's default value.
struct Entry {
  std::wstring key;
  std::wstring name;
  std::wstring value;
};

std::wstring textOf(REFGUID id) {
  std::array<wchar_t, 39> text{};
  StringFromGUID2(id, text.data(), static_cast<int>(text.size()));
  return text.data();
}

std::wstring classKey(const CreatableClass& type) { return L"CLSID\\" + textOf(type.id); }

std::vector<Entry> entriesOf(const CreatableClass& type) {
  const std::wstring key = classKey(type);
  const std::wstring progId = type.progId;
  const std::wstring versioned = progId + kClassVersion;
  return {
      {progId, L"", progId},
      {progId + L"\\CLSID", L"", textOf(type.id)},
      {progId + L"\\CurVer", L"", versioned},
      {versioned, L"", progId},
      {versioned + L"\\CLSID", L"", textOf(type.id)},
      {key, L"", progId},
      {key + L"\\InprocServer32", L"", modulePath()},
      {key + L"\\InprocServer32", L"ThreadingModel", L"Apartment"},
      {key + L"\\ProgID", L"", versioned},
      {key + L"\\VersionIndependentProgID", L"", progId},
      {key + L"\\TypeLib", L"", textOf(LIBID_TLPACSCFG)},
      {key + L"\\Version", L"",
       std::to_wstring(kLibraryMajor) + L"." + std::to_wstring(kLibraryMinor)},
      {key + L"\\Programmable", L"", L""},
  };
}

using Key = UniqueHandle<HKEY, RegCloseKey>;

bool write(const Entry& entry) {
  HKEY handle = nullptr;
  if (RegCreateKeyExW(HKEY_CLASSES_ROOT, entry.key.c_str(), 0, nullptr, 0, KEY_WRITE, nullptr,
                      &handle, nullptr) != ERROR_SUCCESS) {
    return false;
  }
  const Key key(handle);
  const auto bytes = static_cast<DWORD>((entry.value.size() + 1) * sizeof(wchar_t));
  return RegSetValueExW(key.get(), entry.name.empty() ? nullptr : entry.name.c_str(), 0, REG_SZ,
                        reinterpret_cast<const BYTE*>(entry.value.c_str()), bytes) == ERROR_SUCCESS;
}

bool removeTree(const std::wstring& key) {
  const LSTATUS status = RegDeleteTreeW(HKEY_CLASSES_ROOT, key.c_str());
  return status == ERROR_SUCCESS || status == ERROR_FILE_NOT_FOUND;
}

bool registerClasses() {
  for (const CreatableClass& type : creatableClasses()) {
    for (const Entry& entry : entriesOf(type)) {
      if (!write(entry)) return false;
    }
  }
  return true;
}

bool registerTypeLibrary() {
  std::wstring path = modulePath();
  ComPtr<ITypeLib> library;
  return SUCCEEDED(LoadTypeLibEx(path.c_str(), REGKIND_NONE, library.out())) &&
         SUCCEEDED(RegisterTypeLib(library.get(), path.data(), nullptr));
}

bool keyExists(const std::wstring& path) {
  HKEY key = nullptr;
  const LSTATUS status = RegOpenKeyExW(HKEY_CLASSES_ROOT, path.c_str(), 0, KEY_READ, &key);
  const Key owned(status == ERROR_SUCCESS ? key : nullptr);
  return status == ERROR_SUCCESS;
}

bool unregisterTypeLibrary() {
  constexpr SYSKIND kKind = sizeof(void*) == 8 ? SYS_WIN64 : SYS_WIN32;
  if (!keyExists(L"TypeLib\\" + textOf(LIBID_TLPACSCFG))) return true;
  return SUCCEEDED(
      UnRegisterTypeLib(LIBID_TLPACSCFG, kLibraryMajor, kLibraryMinor, LOCALE_NEUTRAL, kKind));
}

}  // namespace

HRESULT registerComponent() {
  if (registerClasses() && registerTypeLibrary()) return S_OK;
  unregisterComponent();
  return SELFREG_E_CLASS;
}

HRESULT unregisterComponent() {
  bool removed = unregisterTypeLibrary();
  for (const CreatableClass& type : creatableClasses()) {
    const std::wstring progId = type.progId;
    for (const std::wstring& key : {progId, progId + kClassVersion, classKey(type)}) {
      if (!removeTree(key)) removed = false;
    }
  }
  return removed ? S_OK : SELFREG_E_CLASS;
}

}  // namespace tlpacscfg
