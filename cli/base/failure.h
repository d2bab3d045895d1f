#pragma once

#include <stdexcept>
#include <string>

#include "cli/base/exit_code.h"

namespace tlpacscfg::cli {

/// Ends the program with a message on standard error and an exit code.
class Failure : public std::runtime_error {
 public:
  Failure(ExitCode code, const std::string& message) : std::runtime_error(message), code_(code) {}

  ExitCode code() const { return code_; }

 private:
  ExitCode code_;
};

}  // namespace tlpacscfg::cli
