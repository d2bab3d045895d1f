#pragma once

#include <string>
#include <vector>

#include "site/plan.h"

/// What commands that write configurations share.
namespace tlpacscfg::cli {

/// The configurations of the numbers, descriptions and patterns that also satisfy every condition
/// "FIELD=VALUE", each once. Without a word and a condition there is none. Throws Failure for a
/// word that fits none, and when none is left.
std::vector<Site::Configuration> selectConfigurations(const Site& site,
                                                      const std::vector<std::string>& words,
                                                      const std::vector<std::string>& conditions);

/// The record with the values of "FIELD=VALUE". Throws Failure.
Site::Configuration withValues(const clsPACSConfiguration& record,
                               const std::vector<std::string>& values);

/// Throws Failure when the settings window would not save a row that the plan inserts or updates.
/// An error of a single field that the plan leaves as it was is none of the plan's.
void requireRules(const Site& site, const Plan& plan);

}  // namespace tlpacscfg::cli
