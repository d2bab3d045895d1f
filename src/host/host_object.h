#pragma once

#include <memory>
#include <string>

#include "config/pacs_configurations.h"
#include "data/data_path.h"
#include "data/host_settings.h"
#include "host/site_access.h"
#include "workstation/workstation.h"

namespace tlpacscfg {

/// The object that a host creates: its settings, and the two collections that the windows work on.
class clsConfig {
 public:
  clsConfig();

  std::shared_ptr<HostSettings> settings = std::make_shared<HostSettings>();
  std::shared_ptr<colPACSConfiguration> m_colPACSConfig;
  std::shared_ptr<colWorkstation> m_colWorkstation;
  bool ConfigLoaded = false;
  bool Initialized = false;

  /// The data path that Init opened, for the windows.
  OpenedPath path;
  /// Whether the windows of this object work through a remote client.
  bool isRemote() const { return path.client != nullptr || dataPath().isRemote(); }

  /// Opens the data path and loads both collections. False when that failed, and when it
  /// was done before, in which case nothing is done.
  bool Init();

  /// "major.minor.revision"
  std::wstring Version() const;

 private:
  bool openDataPath();
};

/// Reads the network root directory from the site INI file of the configuration object created
/// last; a missing value is shown in a message box.
void ReadNetworkRootDir();

}  // namespace tlpacscfg
