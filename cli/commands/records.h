#pragma once

#include <string>
#include <vector>

#include "site/plan.h"

/// What commands that write configurations share.
namespace tlpacscfg::cli {

/// The record with the values of "FIELD=VALUE". Throws Failure.
Site::Configuration withValues(const clsPACSConfiguration& record,
                               const std::vector<std::string>& values);

/// Throws Failure when the settings window would not save a row that the plan inserts or updates.
/// An error of a single field that the plan leaves as it was is none of the plan's.
void requireRules(const Site& site, const Plan& plan);

}  // namespace tlpacscfg::cli
