#pragma once

#include <algorithm>
#include <string_view>

#include "support/text.h"

namespace tlpacscfg::remote {

/// Whether the text is a decimal number from 0 to 255.
inline bool isAddressPart(std::wstring_view part) {
  if (part.empty() || part.size() > 3) return false;
  int number = 0;
  for (const wchar_t digit : part) {
    if (digit < L'0' || digit > L'9') return false;
    number = number * 10 + (digit - L'0');
  }
  return number <= 255;
}

/// Whether the address is this computer, which may be reached by plain HTTP: 127.0.0.0/8, ::1 or
/// localhost.
inline bool isLoopback(std::wstring_view host) {
  if (equalIgnoringCase(host, L"localhost") || host == L"::1" || host == L"[::1]") {
    return true;
  }
  const auto parts = split(host, L'.');
  return parts.size() == 4 && parts[0] == L"127" &&
         std::all_of(parts.begin(), parts.end(), isAddressPart);
}

}  // namespace tlpacscfg::remote
