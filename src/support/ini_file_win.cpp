#include <windows.h>

#include <array>

#include "support/ini_file.h"

namespace tlpacscfg {

std::wstring readIniValue(const std::wstring& file, const std::wstring& section,
                          const std::wstring& key) {
  std::array<wchar_t, 128> buffer{};
  const DWORD length = GetPrivateProfileStringW(section.c_str(), key.c_str(), L"", buffer.data(),
                                                static_cast<DWORD>(buffer.size()), file.c_str());
  return std::wstring(buffer.data(), length);
}

}  // namespace tlpacscfg
