#include <windows.h>

#include <array>
#include <utility>

#include "cli/connection/installed_drivers.h"
#include "support/handle_win.h"
#include "support/text.h"

namespace tlpacscfg::cli {
namespace {

using Key = UniqueHandle<HKEY, &RegCloseKey>;

/// Adds the names of the values below a key in one of the two views of the registry.
void addNames(std::vector<std::string>& names, HKEY root, const wchar_t* path, REGSAM view) {
  HKEY opened = nullptr;
  const LSTATUS status = RegOpenKeyExW(root, path, 0, KEY_QUERY_VALUE | view, &opened);
  const Key key(status == ERROR_SUCCESS ? opened : nullptr);
  if (!key) return;
  std::array<wchar_t, 256> name;
  for (DWORD index = 0;; ++index) {
    auto length = static_cast<DWORD>(name.size());
    if (RegEnumValueW(key.get(), index, name.data(), &length, nullptr, nullptr, nullptr, nullptr) !=
        ERROR_SUCCESS) {
      return;
    }
    names.push_back(toUtf8(std::wstring_view(name.data(), length)));
  }
}

}  // namespace

std::vector<InstalledDrivers> installedDrivers() {
  constexpr const wchar_t* kDrivers = L"SOFTWARE\\ODBC\\ODBCINST.INI\\ODBC Drivers";
  constexpr const wchar_t* kSources = L"SOFTWARE\\ODBC\\ODBC.INI\\ODBC Data Sources";
  std::vector<InstalledDrivers> kinds;
  for (const auto& [programs, view] : {std::pair("64-bit programs", REGSAM{KEY_WOW64_64KEY}),
                                       std::pair("32-bit programs", REGSAM{KEY_WOW64_32KEY})}) {
    InstalledDrivers& kind = kinds.emplace_back();
    kind.programs = programs;
    addNames(kind.drivers, HKEY_LOCAL_MACHINE, kDrivers, view);
    addNames(kind.dataSources, HKEY_LOCAL_MACHINE, kSources, view);
    // A user's own serve both kinds.
    addNames(kind.dataSources, HKEY_CURRENT_USER, kSources, view);
  }
  return kinds;
}

}  // namespace tlpacscfg::cli
