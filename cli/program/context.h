#pragma once

#include <functional>
#include <string>
#include <vector>

#include "cli/connection/connection_options.h"
#include "cli/formats/output.h"
#include "cli/program/command.h"

namespace tlpacscfg::cli {

/// What every command gets.
struct Context {
  ConnectionOptions connection;
  OutputOptions output;
  const Commands& commands;
  std::vector<Option> globalOptions;
  /// The text of `COMMAND --help`; without a name that of the program.
  std::function<std::string(const std::string& command)> helpText;
};

}  // namespace tlpacscfg::cli
