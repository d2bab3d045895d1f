#pragma once

#include <cstddef>

namespace tlpacscfg::remote {

/// The largest request that the service takes, unless it is configured otherwise.
inline constexpr std::size_t kRequestBytes = 1 << 20;

/// The largest answer that the service sends and the client accepts.
inline constexpr std::size_t kMaxAnswerBytes = 64 << 20;

}  // namespace tlpacscfg::remote
