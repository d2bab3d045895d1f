#pragma once

#include <chrono>
#include <memory>
#include <string>

#include "data/host_settings.h"
#include "odbc/connection.h"

/// Opens and closes the direct connections: to the site's SQL Server, or to the local Access file
/// in stand-alone mode.
namespace tlpacscfg {

/// The time limit of a statement, after which its driver cancels it. A driver whose cancelling is
/// not answered gives up after the same time again.
inline constexpr std::chrono::seconds kStatementTime{30};
/// The login time-out for opening a lost connection again where the host sets none.
inline constexpr std::chrono::seconds kReopeningTime{15};

/// A connection to the site's SQL Server with the login of these settings. Throws odbc::Error.
std::shared_ptr<odbc::Connection> openSqlConnection(const HostSettings& config,
                                                    std::chrono::seconds loginTimeout);

/// A connection to a data source by its name, whether or not it is registered as a site's.
std::shared_ptr<odbc::Connection> openDataSource(const HostSettings& config,
                                                 std::chrono::seconds loginTimeout);

/// A connection to an Access file, which is only read. Throws odbc::Error.
std::shared_ptr<odbc::Connection> openAccessFile(const std::wstring& file);

/// True when the connection is open afterwards; a failure is shown in a message box. Only a log
/// file that cannot be written throws, before anything else is tried.
bool ConnectToDatabase(const HostSettings& config);

/// The same for the offline database.
bool ConnectToOfflineDatabase(const HostSettings& config);

/// Closes whatever is open, the remote data client included.
void DisconnectDatabase();

bool TestDatabaseConnection();

/// Whether the data source is registered for the machine or for the user.
bool DSNDatabaseExists(const std::wstring& dsn);

}  // namespace tlpacscfg
