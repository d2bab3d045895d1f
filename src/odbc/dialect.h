#pragma once

#include <string>
#include <string_view>
#include <vector>

/// Statements are written for SQL Server, which gets every text unchanged. For other databases they
/// are translated.
namespace tlpacscfg {

enum class Dialect {
  SqlServer,
  Sqlite,
  AccessReader,  ///< Debian's driver for Access files: see access_reader.h.
};

/// By the name that the driver reports for its database management system.
Dialect dialectOf(std::wstring_view dbmsName);

/// The statements of a text, one for each call of the driver.
std::vector<std::wstring> statementsFor(Dialect dialect, std::wstring_view sql);

}  // namespace tlpacscfg
