#pragma once

#include <optional>
#include <string>

namespace tlpacscfg::cli {

/// Why no further program of this computer could listen on the TCP port, in the system's words;
/// null when one could.
std::optional<std::string> whyNobodyCanListenOn(int port);

}  // namespace tlpacscfg::cli
