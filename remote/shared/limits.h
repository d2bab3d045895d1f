#pragma once

#include <cstddef>

namespace tlpacscfg::remote {

/// The largest answer that the service gives and that the client takes.
inline constexpr std::size_t kMostAnswerBytes = 64 << 20;

}  // namespace tlpacscfg::remote
