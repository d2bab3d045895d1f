#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "site/plan.h"

/// Plans as JSON: a file to be read, kept and applied later.
namespace tlpacscfg::cli {

nlohmann::ordered_json jsonOf(const Plan& plan);

/// Throws what the library throws, and RunTimeError, for what is no plan.
Plan planOf(const nlohmann::ordered_json& json);

/// With its schema and its statements.
std::string planDocument(const Plan& plan);

/// Throws Failure.
Plan readPlanFile(const std::string& file);

}  // namespace tlpacscfg::cli
