#include <signal.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <iostream>

#include "cli/base/process.h"

namespace tlpacscfg::cli {

std::int64_t processId() { return getpid(); }

bool isRunning(std::int64_t processId) {
  return kill(static_cast<pid_t>(processId), 0) == 0 || errno == EPERM;
}

void endProcess(int exitCode) {
  std::cout.flush();
  std::_Exit(exitCode);
}

int runCommandLine(const std::string& commandLine) { return std::system(commandLine.c_str()); }

}  // namespace tlpacscfg::cli
