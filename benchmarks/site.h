#pragma once

#include <memory>
#include <string>

#include "host/config.h"

namespace tlpacscfg::bench {

/// A made-up site of a certain size in an SQLite database.
struct Site {
  std::wstring dataSource;
  int configurations;
  int workstations;

  std::wstring connectString() const { return L"DSN=" + dataSource + L";"; }
};

/// Fills the site's empty database and registers its data source for the user. `schema` is the
/// script that makes the tables.
void makeSite(const Site& site, const std::wstring& schema);

/// A configuration object that is set up for the site, not initialised.
std::shared_ptr<clsConfig> configFor(const Site& site);

/// The same, initialised; throws std::runtime_error when that fails.
std::shared_ptr<clsConfig> initialised(const Site& site);

/// Closes the component's connection.
void disconnect();

}  // namespace tlpacscfg::bench
