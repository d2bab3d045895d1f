#include <windows.h>

#include <thread>

#include "benchmarks/measurements.h"
#include "benchmarks/measuring.h"
#include "ui/show_form/show_form.h"

namespace tlpacscfg::bench {
namespace {

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

void measureIdle(const Site& site, int seconds) {
  constexpr int kMilliseconds = 1000;
  const auto observed = static_cast<DWORD>(seconds * kMilliseconds);
  const std::shared_ptr<clsConfig> config = initialised(site);
  const DWORD windowThread = GetCurrentThreadId();
  double used = 0;
  std::thread observer([&] {
    // Wait until the window has finished loading.
    Sleep(observed / 5);
    const double before = processorSeconds();
    Sleep(observed);
    used = processorSeconds() - before;
    PostThreadMessageW(windowThread, WM_QUIT, 0, 0);
  });
  ShowForm(config);
  observer.join();
  MSG message;
  PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE);
  record("idle", site.workstations, Series::Component, used / seconds);
  disconnect();
}

}  // namespace tlpacscfg::bench
