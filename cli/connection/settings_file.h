#pragma once

#include "cli/connection/connection_options.h"

namespace tlpacscfg::cli {

/// Where the user's own settings file lies; empty when the system names no place.
std::string ownSettingsFile();

/// With the settings of `options.site`; what the command line gave takes precedence. Throws Failure
/// for a site or a setting that does not exist.
ConnectionOptions withSiteSettings(ConnectionOptions options);

}  // namespace tlpacscfg::cli
