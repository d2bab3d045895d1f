#include "host/site_access.h"

#include <chrono>
#include <utility>

#include "data/database.h"
#include "odbc/error.h"
#include "host/config.h"

namespace tlpacscfg {
namespace {

clsConfig* accessed = nullptr;

std::shared_ptr<odbc::Connection> reopened(const HostSettings& settings) {
  const std::chrono::seconds asked(settings.SqlTimeout);
  return openSqlConnection(settings, asked.count() > 0 ? asked : kReopeningTime);
}

std::shared_ptr<TlCommClientObject> reconnected(const HostSettings& settings) {
  if (!ConnectTlCommClient(settings)) {
    throw RunTimeError(odbc::kOdbcFailed, L"The remote data client could not connect.");
  }
  return g_objTlCommClient;
}

}  // namespace

SiteWay SiteWay::ofModules(const HostSettings& settings) {
  SiteWay way;
  way.settings = settings;
  way.standAlone = g_blnUseOfflineDB;
  if (way.standAlone) return way;
  way.client = g_objTlCommClient;
  if (!way.client) way.connection = g_conSql;
  return way;
}

SiteAccess::ModuleState SiteAccess::moduleState() {
  return {g_blnUseOfflineDB, g_blnSqlConnected, g_conSql,
          g_objTlCommClient, g_strTlDatabase,   g_objConfig};
}

void SiteAccess::setModuleState(ModuleState state) {
  g_blnUseOfflineDB = state.useOfflineDB;
  g_blnSqlConnected = state.sqlConnected;
  g_envSql = state.connection ? state.connection->environment() : nullptr;
  g_conSql = std::move(state.connection);
  g_objTlCommClient = std::move(state.client);
  g_strTlDatabase = std::move(state.clientDatabase);
  g_objConfig = std::move(state.settings);
}

SiteAccess::SiteAccess(clsConfig& config) : accessedBefore_(accessed) {
  SiteWay& way = config.way;
  if (accessed == &config || (!way.connection && !way.client && !way.standAlone)) return;
  before_ = moduleState();
  try {
    setModuleState({way.standAlone, way.connection != nullptr, way.connection, way.client,
                    way.settings.SqlDbName, config.settings});
    openWay(config);
  } catch (...) {
    setModuleState(*before_);
    throw;
  }
  accessed = &config;
  settings_ = config.settings;
}

SiteAccess::~SiteAccess() {
  if (!before_) return;
  accessed = accessedBefore_;
  // What another object made of the modules meanwhile stays.
  if (g_objConfig == settings_) setModuleState(std::move(*before_));
}

/// Whoever held the way that was lost holds the new one afterwards.
void SiteAccess::openWay(clsConfig& config) {
  SiteWay& way = config.way;
  if (way.connection && (way.connection->isLost() || !way.connection->answers())) {
    const auto fresh = reopened(way.settings);
    if (before_->connection == way.connection) before_->connection = fresh;
    g_conSql = way.connection = fresh;
    g_envSql = fresh->environment();
  }
  if (way.client && way.client->disconnected) {
    g_objTlCommClient.reset();
    const auto fresh = reconnected(way.settings);
    if (before_->client == way.client) before_->client = fresh;
    way.client = fresh;
  }
}

}  // namespace tlpacscfg
