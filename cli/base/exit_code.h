#pragma once

#include <string>

namespace tlpacscfg::cli {

/// How the program ends, for scripts.
enum class ExitCode {
  Done = 0,
  Differences = 1,
  Usage = 2,
  Findings = 3,
  Conflict = 4,
  NoConnection = 5,
  Refused = 6,
  NotAsSent = 7,
};

/// The page "help exit-codes".
std::string exitCodesText();

}  // namespace tlpacscfg::cli
