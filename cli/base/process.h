#pragma once

#include <cstdint>

namespace tlpacscfg::cli {

/// The number of this process.
std::int64_t processId();

/// Whether a process of this computer has the number.
bool isRunning(std::int64_t processId);

}  // namespace tlpacscfg::cli
