#pragma once

#include <guiddef.h>

#include <cstddef>
#include <string_view>

namespace tlpacscfg {

/// The GUID of a text such as L"{40414A13-F055-4316-AF2D-8813F074449E}".
consteval GUID guidOf(std::wstring_view text) {
  std::size_t next = 0;
  const auto number = [&](int digits) {
    unsigned long value = 0;
    while (digits > 0) {
      const wchar_t letter = text.at(next++);
      if (letter == L'{' || letter == L'-') continue;
      if (!(letter >= L'0' && letter <= L'9') && !(letter >= L'A' && letter <= L'F')) {
        throw "no GUID";
      }
      value = value * 16 +
              static_cast<unsigned long>(letter <= L'9' ? letter - L'0' : letter - L'A' + 10);
      --digits;
    }
    return value;
  };
  GUID id{};
  id.Data1 = number(8);
  id.Data2 = static_cast<unsigned short>(number(4));
  id.Data3 = static_cast<unsigned short>(number(4));
  for (unsigned char& byte : id.Data4) byte = static_cast<unsigned char>(number(2));
  return id;
}

}  // namespace tlpacscfg
