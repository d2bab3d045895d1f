#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>

#include "site/plan.h"

/// Plans as JSON: a file to be read, kept and applied later.
namespace tlpacscfg::cli {

nlohmann::ordered_json planJson(const Plan& plan);

/// Throws what the library throws, and RunTimeError, for what is no plan.
Plan planOf(const nlohmann::ordered_json& json);

/// Whether both change the same from the same, whatever else they rest on.
bool changeTheSame(const Plan& first, const Plan& second);

struct PlanFile {
  Plan plan;
  int undoes = 0;  ///< The number of the change that the plan takes back; 0: none.
};

/// With its schema and its statements.
std::string planDocument(const PlanFile& file);

/// Throws Failure.
PlanFile readPlanFile(const std::string& file);

}  // namespace tlpacscfg::cli
