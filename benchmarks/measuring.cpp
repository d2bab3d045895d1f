#include "benchmarks/measuring.h"

#include <chrono>
#include <cstdio>

namespace tlpacscfg::bench {

double secondsOf(const std::function<void()>& action) {
  const auto start = std::chrono::steady_clock::now();
  action();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void record(const char* measurement, int workstations, Series series, double value) {
  std::printf("%s\t%d\t%s\t%.9g\n", measurement, workstations,
              series == Series::Component ? "component" : "baseline", value);
  std::fflush(stdout);
}

void compare(const char* measurement, const Site& site, int repetitions, const Timed& component,
             const Timed& baseline) {
  for (int i = 0; i < repetitions; ++i) {
    baseline.prepare();
    record(measurement, site.workstations, Series::Baseline, secondsOf(baseline.action));
    component.prepare();
    record(measurement, site.workstations, Series::Component, secondsOf(component.action));
  }
}

}  // namespace tlpacscfg::bench
