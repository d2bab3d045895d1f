#pragma once

#include <string>

#include "cli/formats/output.h"
#include "site/apply_plan.h"
#include "site/plan.h"

/// Plans in words.
namespace tlpacscfg::cli {

/// Field by field. The site, which may be null, knows what configurations are called.
Listing listingOf(const Plan& plan, const Site* site);

/// "20 workstations and 1 configuration"
std::string countOf(const Plan& plan);

/// A line for each row that somebody else changed: what it was, what it is, and who changed it.
std::string textOf(const ForeignChanges& foreign, const Site* site);

}  // namespace tlpacscfg::cli
