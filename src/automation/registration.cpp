#include "automation/registration.h"

#include <oleauto.h>
#include <olectl.h>

#include <algorithm>
#include <array>
#include <string>

#include "automation/com_module.h"
#include "automation/com_server.h"
#include "automation/registration_entries.h"
#include "support/handle_win.h"

namespace tlpacscfg {
namespace {

std::wstring guidText(REFGUID id) {
  std::array<wchar_t, 39> text{};
  StringFromGUID2(id, text.data(), static_cast<int>(text.size()));
  return text.data();
}

RegisteredClass registered(const CreatableClass& type) {
  const GUID* const library = comServer().typeLibrary;
  return {guidText(type.id), type.progId, library ? guidText(*library) : std::wstring()};
}

using Key = UniqueHandle<HKEY, RegCloseKey>;

bool write(const RegistryEntry& entry) {
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
  const std::wstring path = modulePath();
  return std::ranges::all_of(comServer().classes, [&](const CreatableClass& creatable) {
    const RegisteredClass type = registered(creatable);
    return std::ranges::all_of(nameEntries(type), write) &&
           std::ranges::all_of(serverEntries(type, path), write);
  });
}

bool registerTypeLibrary() {
  if (!comServer().typeLibrary) return true;
  std::wstring path = modulePath();
  ComPtr<ITypeLib> library;
  return SUCCEEDED(LoadTypeLibEx(path.c_str(), REGKIND_NONE, library.out())) &&
         SUCCEEDED(RegisterTypeLib(library.get(), path.data(), nullptr));
}

bool keyExists(const std::wstring& path, REGSAM view = 0) {
  HKEY key = nullptr;
  const LSTATUS status = RegOpenKeyExW(HKEY_CLASSES_ROOT, path.c_str(), 0, KEY_READ | view, &key);
  const Key owned(status == ERROR_SUCCESS ? key : nullptr);
  return status == ERROR_SUCCESS;
}

constexpr bool k64Bit = sizeof(void*) == 8;

/// The 64-bit and the 32-bit component share the program identifiers; each has class keys of its
/// own.
bool otherComponentHas(const RegisteredClass& type) {
  return keyExists(classKey(type), k64Bit ? KEY_WOW64_32KEY : KEY_WOW64_64KEY);
}

bool unregisterTypeLibrary() {
  const GUID* const library = comServer().typeLibrary;
  if (!library) return true;
  const std::wstring version =
      std::to_wstring(kTypeLibraryMajor) + L"." + std::to_wstring(kTypeLibraryMinor);
  const std::wstring kind = k64Bit ? L"\\0\\win64" : L"\\0\\win32";
  if (!keyExists(L"TypeLib\\" + guidText(*library) + L"\\" + version + kind)) return true;
  return SUCCEEDED(UnRegisterTypeLib(*library, kTypeLibraryMajor, kTypeLibraryMinor, LOCALE_NEUTRAL,
                                     k64Bit ? SYS_WIN64 : SYS_WIN32));
}

}  // namespace

HRESULT registerServer() {
  if (registerClasses() && registerTypeLibrary()) return S_OK;
  unregisterServer();
  return SELFREG_E_CLASS;
}

HRESULT unregisterServer() {
  bool removed = unregisterTypeLibrary();
  for (const CreatableClass& creatable : comServer().classes) {
    const RegisteredClass type = registered(creatable);
    if (!removeTree(classKey(type))) removed = false;
    if (otherComponentHas(type)) continue;
    for (const std::wstring& key : {type.progId, versionedProgId(type)}) {
      if (!removeTree(key)) removed = false;
    }
  }
  return removed ? S_OK : SELFREG_E_CLASS;
}

}  // namespace tlpacscfg
