#include <windows.h>

#include <cstdlib>
#include <iostream>

#include "cli/base/process.h"
#include "support/text.h"

namespace tlpacscfg::cli {

std::int64_t processId() { return GetCurrentProcessId(); }

bool isRunning(std::int64_t processId) {
  const HANDLE process = OpenProcess(SYNCHRONIZE, FALSE, static_cast<DWORD>(processId));
  if (process == nullptr) return GetLastError() == ERROR_ACCESS_DENIED;
  const bool running = WaitForSingleObject(process, 0) == WAIT_TIMEOUT;
  CloseHandle(process);
  return running;
}

void endProcess(int exitCode) {
  std::cout.flush();
  std::_Exit(exitCode);
}

int runCommandLine(const std::string& commandLine) {
  return _wsystem(fromUtf8("\"" + commandLine + "\"").c_str());
}

}  // namespace tlpacscfg::cli
