#pragma once

#include <optional>
#include <string>
#include <vector>

#include "service/options.h"
#include "service/statement.h"

namespace tlpacscfg::service {

/// Runs a statement in a process of its own, which is killed when it takes too long or the service
/// is to end: a driver that hangs, crashes or exhausts memory harms that process only. Throws
/// Refusal.
std::string runInProcess(const Statement& statement, const ServiceOptions& options, int stopSignal);

/// When the first argument says that this process was started for a statement: runs it and returns
/// the exit code.
std::optional<int> serveStatement(const std::vector<std::string>& arguments);

}  // namespace tlpacscfg::service
