#pragma once

#include <cstdint>
#include <string>

#include "support/secret.h"

namespace tlpacscfg {

/// What a host tells one configuration object about the site.
struct HostSettings {
  HostSettings() = default;
  HostSettings(const HostSettings&) = default;
  HostSettings& operator=(const HostSettings&) = default;
  /// Overwrites the password in memory.
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
  std::int16_t SqlTimeout = 0;  ///< Seconds; 0 means the driver's default.
  std::int16_t Dynamic_DataSource = 0;
  std::wstring Talora_INIFile;
};

}  // namespace tlpacscfg
