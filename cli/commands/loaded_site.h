#pragma once

#include <vector>

#include "cli/formats/output.h"
#include "site/site.h"

namespace tlpacscfg::cli {

/// readSite, on a terminal with its progress.
Site loadSite();

/// Says on standard error which configurations of the site cannot be read. True when there are any.
bool reportUnreadable(const Site& site);

/// Rows for a listing of workstations with their configurations.
Listing listingOf(const Site& site, const std::vector<const SiteWorkstation*>& workstations);

}  // namespace tlpacscfg::cli
