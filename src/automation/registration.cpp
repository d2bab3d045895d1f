#include "automation/registration.h"

#include <oleauto.h>
#include <olectl.h>

#include <array>
#include <string>
#include <vector>

#include "automation/com_module.h"
#include "automation/com_server.h"
#include "support/handle_win.h"

namespace tlpacscfg {
namespace {

constexpr WORD kLibraryMajor = 1;
constexpr WORD kLibraryMinor = 0;
constexpr const wchar_t* kClassVersion = L".1";

/// One value below HKEY_CLASSES_ROOT; an empty name is the key's default value.
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

/// A server with a type library has versions of its classes.
bool isVersioned() { return comServer().typeLibrary != nullptr; }

std::wstring versioned(const std::wstring& progId) { return progId + kClassVersion; }

std::vector<Entry> entriesOf(const CreatableClass& type) {
  const std::wstring key = classKey(type);
  const std::wstring progId = type.progId;
  std::vector<Entry> entries = {
      {progId, L"", progId},
      {progId + L"\\CLSID", L"", textOf(type.id)},
      {key, L"", progId},
      {key + L"\\InprocServer32", L"", modulePath()},
      {key + L"\\InprocServer32", L"ThreadingModel", L"Apartment"},
      {key + L"\\ProgID", L"", isVersioned() ? versioned(progId) : progId},
  };
  if (isVersioned()) {
    const std::wstring library =
        std::to_wstring(kLibraryMajor) + L"." + std::to_wstring(kLibraryMinor);
    const Entry more[] = {
        {progId + L"\\CurVer", L"", versioned(progId)},
        {versioned(progId), L"", progId},
        {versioned(progId) + L"\\CLSID", L"", textOf(type.id)},
        {key + L"\\VersionIndependentProgID", L"", progId},
        {key + L"\\TypeLib", L"", textOf(*comServer().typeLibrary)},
        {key + L"\\Version", L"", library},
        {key + L"\\Programmable", L"", L""},
    };
    entries.insert(entries.end(), std::begin(more), std::end(more));
  }
  return entries;
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
  for (const CreatableClass& type : comServer().classes) {
    for (const Entry& entry : entriesOf(type)) {
      if (!write(entry)) return false;
    }
  }
  return true;
}

bool registerTypeLibrary() {
  if (!comServer().typeLibrary) return true;
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
  const GUID* const library = comServer().typeLibrary;
  if (!library || !keyExists(L"TypeLib\\" + textOf(*library))) return true;
  return SUCCEEDED(
      UnRegisterTypeLib(*library, kLibraryMajor, kLibraryMinor, LOCALE_NEUTRAL, kKind));
}

}  // namespace

HRESULT registerServer() {
  if (registerClasses() && registerTypeLibrary()) return S_OK;
  unregisterServer();
  return SELFREG_E_CLASS;
}

HRESULT unregisterServer() {
  bool removed = unregisterTypeLibrary();
  for (const CreatableClass& type : comServer().classes) {
    const std::wstring progId = type.progId;
    for (const std::wstring& key : {progId, versioned(progId), classKey(type)}) {
      if (!removeTree(key)) removed = false;
    }
  }
  return removed ? S_OK : SELFREG_E_CLASS;
}

}  // namespace tlpacscfg
