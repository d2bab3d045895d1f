#include "host/site_access.h"

#include <chrono>
#include <utility>

#include "data/direct_connections.h"
#include "host/host_object.h"
#include "odbc/error.h"

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
  return modTlCommClient.g_objTlCommClient;
}

}  // namespace

OpenedPath OpenedPath::ofModules(const HostSettings& settings) {
  OpenedPath path;
  path.settings = settings;
  path.standAlone = modMain.g_blnUseOfflineDB;
  if (path.standAlone) return path;
  path.client = modTlCommClient.g_objTlCommClient;
  if (!path.client) path.connection = modMain.g_conSql;
  return path;
}

void SiteAccess::setModuleState(ModuleState state) {
  static_cast<CurrentSite&>(modMain) = std::move(state.site);
  modTlCommClient = std::move(state.client);
}

SiteAccess::SiteAccess(clsConfig& config) : accessedBefore_(accessed) {
  const OpenedPath& path = config.path;
  if (accessed == &config || (!path.connection && !path.client && !path.standAlone)) return;
  before_ = ModuleState{.site = modMain, .client = modTlCommClient};
  try {
    setModuleState({.site = {.g_blnUseOfflineDB = path.standAlone,
                             .g_blnSqlConnected = path.connection != nullptr,
                             .g_envSql = path.connection ? path.connection->environment() : nullptr,
                             .g_conSql = path.connection,
                             .g_objConfig = config.settings},
                    .client = {path.client, path.settings.SqlDbName}});
    reopenPath(config);
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
  // An object created meanwhile keeps the state that it set.
  if (modMain.g_objConfig == settings_) setModuleState(std::move(*before_));
}

/// A saved state that held the lost path holds the new one afterwards.
void SiteAccess::reopenPath(clsConfig& config) {
  OpenedPath& path = config.path;
  if (path.connection && (path.connection->isLost() || !path.connection->answers())) {
    const auto fresh = reopened(path.settings);
    if (before_->site.g_conSql == path.connection) {
      before_->site.g_conSql = fresh;
      before_->site.g_envSql = fresh->environment();
    }
    modMain.g_conSql = path.connection = fresh;
    modMain.g_envSql = fresh->environment();
  }
  if (path.client && path.client->disconnected) {
    modTlCommClient.g_objTlCommClient.reset();
    const auto fresh = reconnected(path.settings);
    auto& clientBefore = before_->client.g_objTlCommClient;
    if (clientBefore == path.client) clientBefore = fresh;
    path.client = fresh;
  }
}

}  // namespace tlpacscfg
