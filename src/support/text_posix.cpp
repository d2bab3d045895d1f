#include <clocale>
#include <cwctype>

#include "support/text.h"

namespace tlpacscfg {

std::wstring upperCase(std::wstring_view text) {
  static const locale_t unicode = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
  std::wstring upper(text);
  for (wchar_t& letter : upper) {
    letter = isAscii(letter)
                 ? asciiUpperCase(letter)
                 : static_cast<wchar_t>(towupper_l(static_cast<wint_t>(letter), unicode));
  }
  return upper;
}

}  // namespace tlpacscfg
