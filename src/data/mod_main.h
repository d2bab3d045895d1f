#pragma once

#include <memory>
#include <string>

#include "data/host_settings.h"
#include "data/result_set.h"
#include "odbc/connection.h"

namespace tlpacscfg {

/// The part of the module's state that says which site is worked on; host/site_access exchanges it
/// as a whole.
struct CurrentSite {
  bool g_blnUseOfflineDB = false;
  bool g_blnSqlConnected = false;
  std::shared_ptr<const odbc::Environment> g_envSql;
  std::shared_ptr<odbc::Connection> g_conSql;
  /// The settings of the configuration object created last.
  std::shared_ptr<HostSettings> g_objConfig;
};

/// The variables of module modMain. Like those of every module, they belong to the
/// thread that created the first of the living objects; no other thread may touch them.
struct ModMain : CurrentSite {
  bool g_blnOfflineConnected = false;
  std::shared_ptr<const odbc::Environment> g_envOffline;
  std::shared_ptr<odbc::Connection> g_conOffline;

  /// The shared result set. A closed one still counts as held: the connection test passes on it,
  /// and numbering a configuration finds no row in it.
  std::shared_ptr<ResultSet> g_rsQuery;

  /// The login of the last SQL Server connection.
  std::wstring g_strSqlUser;
  std::wstring g_strSqlPassword;

  bool g_blnTlCommClientEnabled = false;
  std::wstring g_strLocalTaloraDir;
  std::wstring g_strOfflineDbPath;
  std::wstring g_strNetworkRootDir;

  /// Statements appended by SetWorkstationConfig, each after two line breaks. Nothing runs them.
  std::wstring g_strWorkstationBatch;
};

extern ModMain modMain;

/// Opens the rows of a statement in the shared result set, and returns that. Throws ObjectNotSet
/// without a connection.
std::shared_ptr<ResultSet> openSharedResult(std::shared_ptr<odbc::Connection> connection,
                                            const std::wstring& sql);

/// Gives up everything that is held for objects: connections, the shared result set, the last
/// object's settings and password. What a host set for all objects stays.
void releaseModMain();

/// The offline database lies in the local directory, whose text is used as it stands.
void setLocalTaloraDirectory(const std::wstring& directory);

}  // namespace tlpacscfg
