#pragma once

#include <chrono>
#include <memory>
#include <string>

#include "data/host_settings.h"
#include "odbc/connection.h"
#include "data/result_set.h"
#include "support/runtime_error.h"

/// The direct connections: to the site's SQL Server, or to the local Access file in stand-alone
/// mode. One of them at most is used in a run.
namespace tlpacscfg {

extern bool g_blnSqlConnected;
extern bool g_blnOfflineConnected;
extern std::shared_ptr<const odbc::Environment> g_envSql;
extern std::shared_ptr<odbc::Connection> g_conSql;
extern std::shared_ptr<const odbc::Environment> g_envOffline;
extern std::shared_ptr<odbc::Connection> g_conOffline;

/// The shared result-set slot. A closed result set still counts as held: the connection test
/// passes on it, and numbering a configuration finds no row in it.
extern std::unique_ptr<ResultSet> g_rsQuery;

/// The login of the last SQL Server connection.
extern std::wstring g_strSqlUser;
extern std::wstring g_strSqlPassword;

/// How long a statement may take before its driver takes it back; where even that is not answered,
/// the driver gives up after the same time once more.
inline constexpr std::chrono::seconds kStatementTime{30};
/// How long opening a lost connection again may take where the host sets no time of its own.
inline constexpr std::chrono::seconds kReopeningTime{15};

/// A connection to the site's SQL Server with the login of these settings. Throws odbc::Error.
std::shared_ptr<odbc::Connection> openSqlConnection(const HostSettings& config,
                                                    std::chrono::seconds loginTimeout);

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

/// Opens a statement's rows in the shared slot. Throws ObjectNotSet without a connection.
void openShared(std::shared_ptr<odbc::Connection> connection, const std::wstring& sql);

/// The shared result set; throws ObjectNotSet when none is held.
ResultSet& sharedResult();

}  // namespace tlpacscfg
