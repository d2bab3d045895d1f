#include <windows.h>

#include <algorithm>

#include "support/text.h"

namespace tlpacscfg {

std::wstring upperCase(std::wstring_view text) {
  std::wstring upper(text);
  if (std::all_of(upper.begin(), upper.end(), isAscii)) {
    std::transform(upper.begin(), upper.end(), upper.begin(), asciiUpperCase);
  } else {
    CharUpperBuffW(upper.data(), static_cast<DWORD>(upper.size()));
  }
  return upper;
}

}  // namespace tlpacscfg
