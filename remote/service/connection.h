#pragma once

#include <chrono>
#include <optional>

#include "service/descriptor.h"
#include "service/peer.h"

namespace tlpacscfg::service {

using Clock = std::chrono::steady_clock;

/// An accepted connection on its way to a worker.
struct Connection {
  Descriptor socket;
  Peer peer;
  Clock::time_point accepted;
  /// When its first byte had arrived.
  std::optional<Clock::time_point> spoke = std::nullopt;
};

/// What the token of a request was.
enum class TokenCheck { None, Wrong, Right };

}  // namespace tlpacscfg::service
