#include <array>

#include "cli/connection/installed_drivers.h"
#include "odbc/handle.h"
#include "odbc/platform.h"

namespace tlpacscfg::cli {
namespace {

/// The names that SQLDriversW or SQLDataSourcesW lists.
template <class List>
std::vector<std::string> namesBy(List list, const odbc::EnvironmentHandle& environment) {
  std::vector<std::string> names;
  std::array<SQLWCHAR, 256> name{}, more{};
  const auto size = static_cast<SQLSMALLINT>(name.size());
  SQLSMALLINT length = 0, ignored = 0;
  for (SQLUSMALLINT direction = SQL_FETCH_FIRST; SQL_SUCCEEDED(list(
           environment.get(), direction, name.data(), size, &length, more.data(), size, &ignored));
       direction = SQL_FETCH_NEXT) {
    const std::u16string_view view = odbc::odbcView(name.data(), name.size());
    names.push_back(toUtf8(fromUtf16(view.substr(0, view.find(u'\0')))));
  }
  return names;
}

}  // namespace

std::vector<InstalledDrivers> installedDrivers() {
  const auto environment = odbc::EnvironmentHandle::root();
  // The number is passed as a pointer.
  environment.verify(SQLSetEnvAttr(environment.get(), SQL_ATTR_ODBC_VERSION,
                                   reinterpret_cast<SQLPOINTER>(std::uintptr_t{SQL_OV_ODBC3}), 0));
  return {{.programs = "programs",
           .drivers = namesBy(SQLDriversW, environment),
           .dataSources = namesBy(SQLDataSourcesW, environment)}};
}

}  // namespace tlpacscfg::cli
