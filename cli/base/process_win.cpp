#include <windows.h>

#include <cstdlib>
#include <iostream>

#include "cli/base/process.h"
#include "support/text.h"

namespace tlpacscfg::cli {

std::int64_t processId() { return GetCurrentProcessId(); }

std::string startOf(std::int64_t processId) {
  const DWORD rights = PROCESS_QUERY_LIMITED_INFORMATION;
  const HANDLE process = OpenProcess(rights, FALSE, static_cast<DWORD>(processId));
  if (process == nullptr) return {};
  FILETIME created = {}, ended = {}, inSystem = {}, inProgram = {};
  const BOOL known = GetProcessTimes(process, &created, &ended, &inSystem, &inProgram);
  CloseHandle(process);
  if (known == FALSE) return {};
  return std::to_string((std::uint64_t{created.dwHighDateTime} << 32U) | created.dwLowDateTime);
}

bool isRunning(std::int64_t processId, const std::string& start) {
  const HANDLE process = OpenProcess(SYNCHRONIZE, FALSE, static_cast<DWORD>(processId));
  if (process == nullptr) return GetLastError() == ERROR_ACCESS_DENIED;
  const bool running = WaitForSingleObject(process, 0) == WAIT_TIMEOUT;
  CloseHandle(process);
  const std::string found = startOf(processId);
  return running && (found.empty() || found == start);
}

void endProcess(int exitCode) {
  std::cout.flush();
  std::_Exit(exitCode);
}

int runCommandLine(const std::string& commandLine) {
  return _wsystem(fromUtf8("\"" + commandLine + "\"").c_str());
}

}  // namespace tlpacscfg::cli
