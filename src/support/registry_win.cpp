#include <windows.h>

#include <algorithm>
#include <cstring>
#include <vector>

#include "support/handle_win.h"
#include "support/registry.h"

namespace tlpacscfg::registry {
namespace {

using Key = UniqueHandle<HKEY, &RegCloseKey>;

HKEY handleOf(Root root) {
  return root == Root::LocalMachine ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER;
}

Key open(Root root, const std::wstring& keyPath, REGSAM access) {
  HKEY key = nullptr;
  const LSTATUS status = RegOpenKeyExW(handleOf(root), keyPath.c_str(), 0, access, &key);
  return Key(status == ERROR_SUCCESS ? key : nullptr);
}

}  // namespace

std::optional<Value> read(Root root, const std::wstring& keyPath, const std::wstring& name) {
  const Key key = open(root, keyPath, KEY_QUERY_VALUE);
  if (!key) return std::nullopt;
  DWORD type = 0;
  DWORD bytes = 0;
  LSTATUS status = RegQueryValueExW(key.get(), name.c_str(), nullptr, &type, nullptr, &bytes);
  std::vector<BYTE> data(bytes);
  if (status == ERROR_SUCCESS) {
    status = RegQueryValueExW(key.get(), name.c_str(), nullptr, &type, data.data(), &bytes);
  }
  if (status != ERROR_SUCCESS) return std::nullopt;
  if (type == REG_SZ) {
    std::wstring text(bytes / sizeof(wchar_t), L'\0');
    std::copy_n(data.data(), text.size() * sizeof(wchar_t), reinterpret_cast<BYTE*>(text.data()));
    return text;
  }
  std::uint32_t number = 1;
  if (type == REG_DWORD && bytes == sizeof(number)) std::memcpy(&number, data.data(), bytes);
  return number;
}

bool keyExists(Root root, const std::wstring& keyPath) {
  return static_cast<bool>(open(root, keyPath, KEY_QUERY_VALUE));
}

bool createKey(Root root, const std::wstring& keyPath) {
  HKEY key = nullptr;
  std::wstring keyClass = L"1";
  const LSTATUS status =
      RegCreateKeyExW(handleOf(root), keyPath.c_str(), 0, keyClass.data(), REG_OPTION_NON_VOLATILE,
                      KEY_ALL_ACCESS, nullptr, &key, nullptr);
  const Key owned(status == ERROR_SUCCESS ? key : nullptr);
  return status == ERROR_SUCCESS;
}

bool deleteKey(Root root, const std::wstring& keyPath) {
  const Key key = open(root, keyPath, KEY_ALL_ACCESS);
  return key && RegDeleteKeyW(key.get(), L"") == ERROR_SUCCESS;
}

bool write(Root root, const std::wstring& keyPath, const std::wstring& name, const Value& value) {
  const Key key = open(root, keyPath, KEY_ALL_ACCESS);
  if (!key) return false;
  const auto set = [&](DWORD type, const void* data, std::size_t bytes) {
    return RegSetValueExW(key.get(), name.c_str(), 0, type, static_cast<const BYTE*>(data),
                          static_cast<DWORD>(bytes)) == ERROR_SUCCESS;
  };
  if (const auto* text = std::get_if<std::wstring>(&value)) {
    return set(REG_SZ, text->c_str(), text->size() * sizeof(wchar_t));
  }
  const auto number = std::get<std::uint32_t>(value);
  return set(REG_DWORD, &number, sizeof(number));
}

}  // namespace tlpacscfg::registry
