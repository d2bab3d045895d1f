#include <windows.h>

#include <thread>

#include "benchmarks/measurements.h"
#include "benchmarks/measuring.h"
#include "ui/show_form.h"

namespace tlpacscfg::bench {
namespace {

constexpr DWORD kSettlingMilliseconds = 2'000;
constexpr DWORD kIdleMilliseconds = 10'000;

double processorSeconds() {
  FILETIME created{}, ended{}, kernel{}, user{};
  GetProcessTimes(GetCurrentProcess(), &created, &ended, &kernel, &user);
  const auto seconds = [](const FILETIME& time) {
    constexpr double kUnitsInSecond = 1e7;
    const ULARGE_INTEGER units{{time.dwLowDateTime, time.dwHighDateTime}};
    return static_cast<double>(units.QuadPart) / kUnitsInSecond;
  };
  return seconds(kernel) + seconds(user);
}

}  // namespace

void measureIdle(const Site& site) {
  const std::shared_ptr<clsConfig> config = initialised(site);
  const DWORD windowThread = GetCurrentThreadId();
  double used = 0;
  std::thread observer([&] {
    Sleep(kSettlingMilliseconds);
    const double before = processorSeconds();
    Sleep(kIdleMilliseconds);
    used = processorSeconds() - before;
    PostThreadMessageW(windowThread, WM_QUIT, 0, 0);
  });
  ShowForm(config);
  observer.join();
  MSG message;
  PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE);
  record("idle", site.workstations, Series::Component, used * 1000 / kIdleMilliseconds);
  disconnect();
}

}  // namespace tlpacscfg::bench
