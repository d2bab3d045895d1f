#pragma once

#include <memory>
#include <optional>
#include <string>

#include "data/host_settings.h"
#include "odbc/connection.h"
#include "data/tl_comm_client.h"

namespace tlpacscfg {

class clsConfig;

/// The way to the data that an object's Init opened; empty until then.
struct SiteWay {
  std::shared_ptr<odbc::Connection> connection;  ///< Of the direct way.
  std::shared_ptr<TlCommClientObject> client;    ///< Of the remote way.
  bool standAlone = false;
  /// What it was opened with, to open it again.
  HostSettings settings;

  static SiteWay ofModules(const HostSettings& settings);
};

/// Lets the windows of a configuration object reach their own site: while it lives, the modules
/// hold that object's settings and its way to the data, whatever another object made of them. A
/// direct connection that is lost, and any way that was closed, is opened again first. One access
/// is for one step, as a host may do anything while a message box waits. May be nested.
class SiteAccess {
 public:
  /// Throws RunTimeError when the way cannot be opened again; the modules are as they were then.
  explicit SiteAccess(clsConfig& config);
  ~SiteAccess();
  SiteAccess(const SiteAccess&) = delete;
  SiteAccess& operator=(const SiteAccess&) = delete;

 private:
  struct ModuleState {
    bool useOfflineDB;
    bool sqlConnected;
    std::shared_ptr<odbc::Connection> connection;
    std::shared_ptr<TlCommClientObject> client;
    std::wstring clientDatabase;
    std::shared_ptr<HostSettings> settings;
  };
  static ModuleState moduleState();
  static void setModuleState(ModuleState state);
  void openWay(clsConfig& config);

  /// Null in a nested access, and for an object that has no way of its own.
  std::optional<ModuleState> before_;
  clsConfig* accessedBefore_ = nullptr;
  std::shared_ptr<HostSettings> settings_;
};

}  // namespace tlpacscfg
