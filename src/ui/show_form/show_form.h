#pragma once

#include <cstdint>
#include <memory>

#include "host/config.h"

namespace tlpacscfg {

/// Shows the workstation list and returns when it has been closed; meanwhile the messages of the
/// host's user interface are processed. 0 then; 1, and no window, when the database does not
/// answer.
std::uint8_t ShowForm(const std::shared_ptr<clsConfig>& config);

}  // namespace tlpacscfg
