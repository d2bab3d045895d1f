#pragma once

#include <chrono>
#include <functional>

namespace tlpacscfg::client {

/// Runs work on a new thread and waits for it. False on time-out: the work then continues alone,
/// and this module stays loaded until it ends. The work must not throw, and must own what it uses.
/// While waiting, the windows of the calling thread are painted; their posted messages stay in the
/// queue. Throws ClientError when no thread can be started.
bool doneInTime(std::function<void()> work, std::chrono::milliseconds time);

}  // namespace tlpacscfg::client
