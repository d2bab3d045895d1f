#pragma once

#include <chrono>
#include <functional>

namespace tlpacscfg::client {

/// Runs work on a thread of its own. False when it is not done in time: then nobody waits for it
/// any longer, and it goes on with what it owns; this module stays loaded until it is done. The
/// work must not throw. The windows of the calling thread are painted in the meantime; their posted
/// messages wait. Throws ClientError when there is no thread to be had.
bool doneInTime(std::function<void()> work, std::chrono::milliseconds time);

}  // namespace tlpacscfg::client
