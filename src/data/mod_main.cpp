#include "data/mod_main.h"

#include "support/runtime_error.h"
#include "support/secret.h"

namespace tlpacscfg {

ModMain modMain;

// The caller's pointer may be the module's own, which a callback may replace.
// NOLINTNEXTLINE(performance-unnecessary-value-param)
std::shared_ptr<ResultSet> openSharedResult(std::shared_ptr<odbc::Connection> connection,
                                            const std::wstring& sql) {
  if (!connection) raise(ErrorNumber::ObjectNotSet);
  return modMain.g_rsQuery = std::make_shared<ResultSet>(connection->query(sql));
}

void releaseModMain() {
  modMain.g_rsQuery.reset();
  modMain.g_blnSqlConnected = false;
  modMain.g_conSql.reset();
  modMain.g_envSql.reset();
  modMain.g_objConfig.reset();
  modMain.g_blnOfflineConnected = false;
  modMain.g_conOffline.reset();
  modMain.g_envOffline.reset();
  wipe(modMain.g_strSqlPassword);
}

void setLocalTaloraDirectory(const std::wstring& directory) {
  modMain.g_strLocalTaloraDir = directory;
  modMain.g_strOfflineDbPath = directory + L"\\OFFLINE\\SYSTEM.MDB";
}

}  // namespace tlpacscfg
