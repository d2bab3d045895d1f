#pragma once

#include <string>
#include <system_error>

namespace tlpacscfg::cli {

/// The system's words for an error, in UTF-8 and without a final stop.
std::string systemReason(const std::error_code& error);

}  // namespace tlpacscfg::cli
