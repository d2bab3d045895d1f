#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "support/secret.h"

namespace tlpacscfg {

/// What a host tells one configuration object about the site.
struct HostSettings {
  HostSettings() = default;
  HostSettings(const HostSettings&) = default;
  HostSettings& operator=(const HostSettings&) = default;
  /// The password does not stay behind in memory.
  ~HostSettings() { wipe(Password); }

  std::wstring TlCommClientHostIP;
  std::wstring TlCommClientHostPort;
  std::wstring TlCommClientTimeout;
  std::int16_t User_ID = 0;
  std::wstring SqlServerName;
  std::wstring Password;
  std::wstring SqlUserName;
  std::wstring SqlDbName;
  std::wstring SQLDSN;
  std::int16_t SqlTimeout = 0;  ///< Seconds; 0 waits as long as the driver does.
  std::int16_t Dynamic_DataSource = 0;
  std::wstring Talora_INIFile;
};

/// Settings that all configuration objects share.
extern bool g_blnUseOfflineDB;
extern bool g_blnTlCommClientEnabled;
extern std::wstring g_strLocalTaloraDir;
extern std::wstring g_strOfflineDbPath;
extern std::wstring g_strNetworkRootDir;

/// The settings of the configuration object created last.
extern std::shared_ptr<HostSettings> g_objConfig;

/// The offline database lies in the local directory, whose text is used as it stands.
void setLocalTaloraDirectory(const std::wstring& directory);

}  // namespace tlpacscfg
