#pragma once

#include <cstdint>
#include <string>

namespace tlpacscfg::cli {

/// The number of this process.
std::int64_t processId();

/// Whether a process of this computer has the number.
bool isRunning(std::int64_t processId);

/// Ends the program at once, whatever its threads are doing. What was written to standard output
/// arrives.
[[noreturn]] void endProcess(int exitCode);

/// Runs it in the system's shell and waits; 0 for success.
int runCommandLine(const std::string& commandLine);

}  // namespace tlpacscfg::cli
