#pragma once

#include <optional>
#include <string>

#include "service/descriptor.h"

namespace tlpacscfg::service {

/// A socket that listens on the address without blocking; port 0 is any free one. Nullopt when that
/// is not possible.
std::optional<Descriptor> listenOn(const std::string& address, int port);

int portOf(const Descriptor& socket);

}  // namespace tlpacscfg::service
