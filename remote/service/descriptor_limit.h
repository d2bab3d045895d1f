#pragma once

#include <cstddef>

namespace tlpacscfg::service {

/// Raises the limit of this process's open descriptors so that so many connections can wait while
/// every worker is busy. Returns how many can; throws std::runtime_error when none can.
std::size_t reserveDescriptors(std::size_t waiting, std::size_t workers);

}  // namespace tlpacscfg::service
