#pragma once

#include <memory>
#include <string>
#include <vector>

#include "cli/base/exit_code.h"
#include "cli/base/option.h"

namespace tlpacscfg::cli {

struct Context;

struct CommandHelp {
  const char* name;
  /// One line for the list of commands.
  const char* summary;
  /// Whole command lines, one a line.
  const char* examples;
};

/// A command of the program. Its members hold the values of its options.
class Command {
 public:
  virtual ~Command() = default;

  virtual CommandHelp help() const = 0;
  virtual std::vector<Option> options() { return {}; }
  /// Throws Failure, and what the core throws.
  virtual ExitCode run(Context& context) = 0;
};

using Commands = std::vector<std::unique_ptr<Command>>;

}  // namespace tlpacscfg::cli
