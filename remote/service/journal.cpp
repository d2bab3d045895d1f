#include "service/journal.h"

#include <chrono>
#include <cstdio>
#include <ctime>
#include <mutex>

namespace tlpacscfg::service {

void writeJournal(const std::string& line) {
  static std::mutex mutex;
  const std::time_t now = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
  std::tm parts{};
  gmtime_r(&now, &parts);
  char time[32];
  std::strftime(time, sizeof(time), "%Y-%m-%dT%H:%M:%SZ", &parts);
  const std::scoped_lock lock(mutex);
  // A log that cannot be written must not stop the service.
  std::fprintf(stdout, "%s %s\n", time, line.c_str());
  std::fflush(stdout);
}

}  // namespace tlpacscfg::service
