#pragma once

#include <cstdint>
#include <string>

namespace tlpacscfg::cli {

/// The number of this process.
std::int64_t processId();

/// When the process began, as the system counts it: no other process with its number has the same.
/// Empty when there is none, or the system does not tell.
std::string startOf(std::int64_t processId);

/// Whether the process is still at work. One whose start the system does not tell counts as it.
bool isRunning(std::int64_t processId, const std::string& start);

/// Ends the program at once, whatever its threads are doing. What was written to standard output
/// arrives.
[[noreturn]] void endProcess(int exitCode);

/// Runs it in the system's shell and waits; 0 for success.
int runCommandLine(const std::string& commandLine);

}  // namespace tlpacscfg::cli
