#include "cli/base/system_reason.h"

namespace tlpacscfg::cli {

std::string systemReason(const std::error_code& error) { return error.message(); }

}  // namespace tlpacscfg::cli
