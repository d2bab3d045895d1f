#pragma once

#include <memory>
#include <optional>

#include "data/mod_main.h"
#include "data/tl_comm_client.h"

namespace tlpacscfg {

class clsConfig;

/// The data path that an object's Init opened; empty until then.
struct OpenedPath {
  std::shared_ptr<odbc::Connection> connection;  ///< Of the direct path.
  std::shared_ptr<TlCommClientObject> client;    ///< Of the remote path.
  bool standAlone = false;
  /// What it was opened with, to open it again.
  HostSettings settings;

  static OpenedPath ofModules(const HostSettings& settings);
};

/// Lets the windows of a configuration object reach their own site: while it lives, the modules
/// hold that object's settings and its data path, whatever another object put there. A direct
/// connection that is lost, and any path that was closed, is opened again first. One access is for
/// one step, as a host may do anything while a message box waits. May be nested.
class SiteAccess {
 public:
  /// Throws RunTimeError when the path cannot be opened again; the modules are as they were then.
  explicit SiteAccess(clsConfig& config);
  ~SiteAccess();
  SiteAccess(const SiteAccess&) = delete;
  SiteAccess& operator=(const SiteAccess&) = delete;

 private:
  struct ModuleState {
    CurrentSite site;
    ModTlCommClient client;
  };
  static void setModuleState(ModuleState state);
  void reopenPath(clsConfig& config);

  /// Null in a nested access, and for an object that has no path of its own.
  std::optional<ModuleState> before_;
  clsConfig* accessedBefore_ = nullptr;
  std::shared_ptr<HostSettings> settings_;
};

}  // namespace tlpacscfg
