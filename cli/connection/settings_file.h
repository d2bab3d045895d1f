#pragma once

#include "cli/connection/connection_options.h"

namespace tlpacscfg::cli {

/// The settings file that the options name, else the user's own; empty when the system names no
/// place.
std::string settingsFileOf(const ConnectionOptions& options);

/// With the settings of `options.site`; what the command line gave takes precedence. Throws Failure
/// for a site or a setting that does not exist.
ConnectionOptions withSiteSettings(ConnectionOptions options);

}  // namespace tlpacscfg::cli
