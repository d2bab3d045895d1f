#include <windows.h>

#include "support/list_sort.h"

namespace tlpacscfg {

std::string collationKey(std::wstring_view text) {
  if (text.empty()) return {};
  constexpr DWORD kFlags = LCMAP_SORTKEY | NORM_IGNORECASE;
  const auto map = [&](LPWSTR target, int bytes) {
    return LCMapStringEx(LOCALE_NAME_USER_DEFAULT, kFlags, text.data(),
                         static_cast<int>(text.size()), target, bytes, nullptr, nullptr, 0);
  };
  // For a sort key the target is a byte buffer and its size counts bytes.
  std::string key(text.size() * 6 + 16, '\0');
  int bytes = map(reinterpret_cast<LPWSTR>(key.data()), static_cast<int>(key.size()));
  if (bytes == 0) {
    key.resize(static_cast<std::size_t>(map(nullptr, 0)));
    bytes = map(reinterpret_cast<LPWSTR>(key.data()), static_cast<int>(key.size()));
  }
  key.resize(static_cast<std::size_t>(bytes));
  return key;
}

}  // namespace tlpacscfg
