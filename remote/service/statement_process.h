#pragma once

#include <optional>
#include <string>
#include <vector>

#include "service/options.h"
#include "service/statement.h"

namespace tlpacscfg::service {

/// Runs a statement in a process of its own, and ends that process when it takes too long or the
/// service is to end. Whatever a driver does - wait for good, break down, eat memory - it does to
/// that process alone. Throws Refusal.
std::string runInProcess(const Statement& statement, const ServiceOptions& options, int stopSignal);

/// The exit code of the process, when this program was started to be one; it is told so by its
/// first argument.
std::optional<int> serveStatement(const std::vector<std::string>& arguments);

}  // namespace tlpacscfg::service
