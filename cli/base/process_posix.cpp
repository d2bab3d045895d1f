#include <signal.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <sstream>

#include "cli/base/process.h"

namespace tlpacscfg::cli {

std::int64_t processId() { return getpid(); }

std::string startOf(std::int64_t processId) {
  std::string boot, line, start;
  std::ifstream("/proc/sys/kernel/random/boot_id") >> boot;
  std::ifstream stat("/proc/" + std::to_string(processId) + "/stat");
  if (!std::getline(stat, line)) return {};
  // The clock ticks since the boot are the 20th field after the name, which may hold blanks.
  std::istringstream fields(line.substr(line.rfind(')') + 1));
  for (int field = 0; field < 20; ++field) fields >> start;
  return boot + ":" + start;
}

bool isRunning(std::int64_t processId, const std::string& start) {
  if (kill(static_cast<pid_t>(processId), 0) != 0 && errno != EPERM) return false;
  const std::string found = startOf(processId);
  return found.empty() || found == start;
}

void endProcess(int exitCode) {
  std::cout.flush();
  std::_Exit(exitCode);
}

int runCommandLine(const std::string& commandLine) { return std::system(commandLine.c_str()); }

}  // namespace tlpacscfg::cli
