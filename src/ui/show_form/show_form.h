#pragma once

#include <cstdint>
#include <memory>

#include "host/host_object.h"

namespace tlpacscfg {

/// Shows the workstation list, processes the messages of the host's user interface, and returns 0
/// after the list was closed. Returns 1 without a window if the database does not answer.
std::uint8_t ShowForm(const std::shared_ptr<clsConfig>& config);

}  // namespace tlpacscfg
