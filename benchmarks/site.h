#pragma once

#include <memory>
#include <string>
#include <vector>

#include "host/host_object.h"

namespace tlpacscfg::bench {

/// How the component accesses a site's data.
enum class Path {
  Direct,   ///< SQLite's driver, in the component's own process.
  Server,   ///< The driver for SQL Server, connected to the stand-in.
  Service,  ///< The remote data client and service, which reads the same SQLite file.
};

/// A made-up site of a certain size.
struct Site {
  /// The data source of its SQLite file, and its name at the remote service.
  std::wstring dataSource;
  int configurations;
  int workstations;
  /// The number of measurements of each row.
  int repetitions;

  /// Only for Direct and Server.
  std::wstring connectString(Path path) const;
};

/// Creates the site in its SQLite file and registers its data source.
void makeSite(const Site& site);
/// Creates the site in the stand-in for SQL Server, replacing any other.
void makeServerSite(const Site& site);

/// A configuration object for the site before Init.
std::shared_ptr<clsConfig> configFor(const Site& site, Path path = Path::Direct);

/// The same after Init; throws std::runtime_error when Init fails.
std::shared_ptr<clsConfig> initialised(const Site& site, Path path = Path::Direct);

/// Calls Init, and throws std::runtime_error when that fails.
void init(clsConfig& config);

/// Closes the component's connection.
void disconnect();

/// The statements that the driver receives for a text of the component.
std::vector<std::u16string> statementsAt(Path path, const std::wstring& text);

}  // namespace tlpacscfg::bench
