#pragma once

#include <string>
#include <vector>

#include "cli/base/exit_code.h"
#include "cli/program/command.h"

namespace tlpacscfg::cli {

/// Parses the arguments, runs the command that they name and reports what fails on standard error.
ExitCode runProgram(const Commands& commands, const std::vector<std::string>& arguments);

}  // namespace tlpacscfg::cli
