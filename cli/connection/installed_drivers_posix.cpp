#include <array>

#include "cli/connection/installed_drivers.h"
#include "odbc/handle.h"
#include "odbc/platform.h"

namespace tlpacscfg::cli {

std::vector<std::string> installedDrivers() {
  const auto environment = odbc::EnvironmentHandle::root();
  // The number is passed as a pointer.
  environment.verify(SQLSetEnvAttr(environment.get(), SQL_ATTR_ODBC_VERSION,
                                   reinterpret_cast<SQLPOINTER>(std::uintptr_t{SQL_OV_ODBC3}), 0));
  std::string names;
  std::array<SQLWCHAR, 256> name{}, attributes{};
  SQLSMALLINT length = 0, ignored = 0;
  for (SQLUSMALLINT direction = SQL_FETCH_FIRST; SQL_SUCCEEDED(SQLDriversW(
           environment.get(), direction, name.data(), static_cast<SQLSMALLINT>(name.size()),
           &length, attributes.data(), static_cast<SQLSMALLINT>(attributes.size()), &ignored));
       direction = SQL_FETCH_NEXT) {
    const std::u16string_view view = odbc::odbcView(name.data(), name.size());
    names += (names.empty() ? "" : ", ") + toUtf8(fromUtf16(view.substr(0, view.find(u'\0'))));
  }
  return {names.empty() ? "none" : names};
}

}  // namespace tlpacscfg::cli
