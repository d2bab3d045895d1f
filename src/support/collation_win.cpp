#include <windows.h>

#include <array>

#include "support/list_view_sort.h"

namespace tlpacscfg {

std::string collationKey(std::wstring_view text) {
  if (text.empty()) return {};
  constexpr DWORD kFlags = LCMAP_SORTKEY | NORM_IGNORECASE;
  const auto map = [&](LPWSTR target, int bytes) {
    return LCMapStringEx(LOCALE_NAME_USER_DEFAULT, kFlags, text.data(),
                         static_cast<int>(text.size()), target, bytes, nullptr, nullptr, 0);
  };
  // For a sort key the target is a byte buffer and its size counts bytes.
  std::array<char, 512> few;
  const int bytes = map(reinterpret_cast<LPWSTR>(few.data()), static_cast<int>(few.size()));
  if (bytes > 0) return std::string(few.data(), static_cast<std::size_t>(bytes));
  std::string key(static_cast<std::size_t>(map(nullptr, 0)), '\0');
  map(reinterpret_cast<LPWSTR>(key.data()), static_cast<int>(key.size()));
  return key;
}

}  // namespace tlpacscfg
