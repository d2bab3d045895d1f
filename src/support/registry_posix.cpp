#include <map>
#include <utility>

#include "support/registry.h"
#include "support/text.h"

namespace tlpacscfg::registry {
namespace {

using Path = std::pair<Root, std::wstring>;
using Values = std::map<std::wstring, Value>;

std::map<Path, Values>& keys() {
  static std::map<Path, Values> store;
  return store;
}

Path pathOf(Root root, const std::wstring& keyPath) {
  std::wstring folded = upperCase(keyPath);
  while (folded.ends_with(L'\\')) folded.pop_back();
  return {root, folded};
}

}  // namespace

std::optional<Value> read(Root root, const std::wstring& keyPath, const std::wstring& name) {
  const auto key = keys().find(pathOf(root, keyPath));
  if (key == keys().end()) return std::nullopt;
  const auto value = key->second.find(upperCase(name));
  if (value == key->second.end()) return std::nullopt;
  const auto* const text = std::get_if<std::wstring>(&value->second);
  if (text != nullptr && !text->empty()) return *text + L'\0';
  return value->second;
}

bool keyExists(Root root, const std::wstring& keyPath) {
  return keys().contains(pathOf(root, keyPath));
}

bool createKey(Root root, const std::wstring& keyPath) {
  const Path path = pathOf(root, keyPath);
  for (std::size_t end = path.second.find(L'\\'); end != std::wstring::npos;
       end = path.second.find(L'\\', end + 1)) {
    keys().try_emplace({root, path.second.substr(0, end)});
  }
  keys().try_emplace(path);
  return true;
}

bool deleteKey(Root root, const std::wstring& keyPath) {
  const Path path = pathOf(root, keyPath);
  const auto below = keys().lower_bound({root, path.second + L"\\"});
  const bool hasSubkeys = below != keys().end() && below->first.first == root &&
                          below->first.second.starts_with(path.second + L"\\");
  return !hasSubkeys && keys().erase(path) == 1;
}

bool write(Root root, const std::wstring& keyPath, const std::wstring& name, const Value& value) {
  const auto key = keys().find(pathOf(root, keyPath));
  if (key == keys().end()) return false;
  key->second.insert_or_assign(upperCase(name), value);
  return true;
}

}  // namespace tlpacscfg::registry
