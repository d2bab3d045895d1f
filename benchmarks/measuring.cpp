#include "benchmarks/measuring.h"

#include <chrono>
#include <cstdio>

namespace tlpacscfg::bench {

double secondsOf(const std::function<void()>& action) {
  const auto start = std::chrono::steady_clock::now();
  action();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void record(const char* row, int size, Series series, double value) {
  std::printf("%s\t%d\t%s\t%.9g\n", row, size,
              series == Series::Component ? "component" : "baseline", value);
  std::fflush(stdout);
}

void measure(const char* row, int size, int repetitions, const Timed& component) {
  for (int i = 0; i < repetitions; ++i) {
    component.prepare();
    record(row, size, Series::Component, secondsOf(component.action));
  }
}

void compare(const char* row, int size, int repetitions, const Timed& component,
             const Timed& baseline) {
  const auto time = [&](Series series) {
    const Timed& timed = series == Series::Component ? component : baseline;
    timed.prepare();
    record(row, size, series, secondsOf(timed.action));
  };
  for (int i = 0; i < repetitions; ++i) {
    time(i % 2 == 0 ? Series::Baseline : Series::Component);
    time(i % 2 == 0 ? Series::Component : Series::Baseline);
  }
}

}  // namespace tlpacscfg::bench
