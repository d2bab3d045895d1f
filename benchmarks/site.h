#pragma once

#include <memory>
#include <string>
#include <vector>

#include "host/config.h"

namespace tlpacscfg::bench {

/// The component's way to a site's data.
enum class Way {
  Direct,   ///< SQLite's driver, in the component's own process.
  Server,   ///< The driver for SQL Server, and the stand-in for one.
  Service,  ///< The remote data client and service, which reads the same SQLite file.
};

/// A made-up site of a certain size.
struct Site {
  /// Of the SQLite file that holds it; the remote service knows it by the same name.
  std::wstring dataSource;
  int configurations;
  int workstations;
  /// How often each row is measured.
  int repetitions;

  /// For the way Direct or Server.
  std::wstring connectString(Way way) const;
};

/// Makes the site in its SQLite file, and tells the computer about it.
void makeSite(const Site& site);
/// Makes the site as the one that the stand-in for SQL Server keeps, in place of any other.
void makeServerSite(const Site& site);

/// A configuration object that is set up for the site, not initialised.
std::shared_ptr<clsConfig> configFor(const Site& site, Way way = Way::Direct);

/// The same, initialised; throws std::runtime_error when that fails.
std::shared_ptr<clsConfig> initialised(const Site& site, Way way = Way::Direct);

/// Calls Init, and throws std::runtime_error when that fails.
void init(clsConfig& config);

/// Closes the component's connection.
void disconnect();

/// The statements that the driver gets for a text of the component's.
std::vector<std::wstring> statementsAt(Way way, const std::wstring& text);

}  // namespace tlpacscfg::bench
