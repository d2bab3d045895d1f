#pragma once

#include <string>

#include "cli/connection/connection_options.h"

namespace tlpacscfg::cli {

enum class IfMissing {
  Refuse,  ///< On a terminal it is asked for; elsewhere the program ends.
  Empty,
};

/// The password or token, from the file or the input that the options name, else from the
/// environment, else from the terminal. Throws Failure. The caller wipes it.
std::wstring readSecret(const ConnectionOptions& options, const std::string& what,
                        IfMissing ifMissing);

}  // namespace tlpacscfg::cli
