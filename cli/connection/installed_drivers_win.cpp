#include <windows.h>

#include <array>

#include "cli/connection/installed_drivers.h"
#include "support/handle_win.h"
#include "support/text.h"

namespace tlpacscfg::cli {
namespace {

using Key = UniqueHandle<HKEY, &RegCloseKey>;

/// The names of the values below a key in one of the two views of the registry.
std::string namesIn(const wchar_t* path, REGSAM view) {
  HKEY opened = nullptr;
  const LSTATUS status =
      RegOpenKeyExW(HKEY_LOCAL_MACHINE, path, 0, KEY_QUERY_VALUE | view, &opened);
  const Key key(status == ERROR_SUCCESS ? opened : nullptr);
  std::string names;
  if (!key) return "none";
  std::array<wchar_t, 256> name;
  for (DWORD index = 0;; ++index) {
    auto length = static_cast<DWORD>(name.size());
    if (RegEnumValueW(key.get(), index, name.data(), &length, nullptr, nullptr, nullptr, nullptr) !=
        ERROR_SUCCESS) {
      break;
    }
    names += (names.empty() ? "" : ", ") + toUtf8(std::wstring_view(name.data(), length));
  }
  return names.empty() ? "none" : names;
}

}  // namespace

std::vector<std::string> installedDrivers() {
  constexpr const wchar_t* kDrivers = L"SOFTWARE\\ODBC\\ODBCINST.INI\\ODBC Drivers";
  constexpr const wchar_t* kSources = L"SOFTWARE\\ODBC\\ODBC.INI\\ODBC Data Sources";
  std::vector<std::string> lines;
  for (const auto& [bits, view] :
       {std::pair("64 bits", KEY_WOW64_64KEY), std::pair("32 bits", KEY_WOW64_32KEY)}) {
    lines.push_back(std::string(bits) + ": " + namesIn(kDrivers, static_cast<REGSAM>(view)) +
                    "; data sources: " + namesIn(kSources, static_cast<REGSAM>(view)));
  }
  return lines;
}

}  // namespace tlpacscfg::cli
