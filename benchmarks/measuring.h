#pragma once

#include <functional>

/// Prints the measured values, one a line, for the report.
namespace tlpacscfg::bench {

enum class Series { Component, Baseline };

/// How long the action takes, in seconds.
double secondsOf(const std::function<void()>& action);

/// `size` is the site's number of workstations, or 0.
void record(const char* row, int size, Series series, double value);

/// Something to time, and what is done before it each time, which is not timed.
struct Timed {
  std::function<void()> action;
  std::function<void()> prepare = [] {};
};

void measure(const char* row, int size, int repetitions, const Timed& component);

/// Times both in turn. Each is the first of the two in every other round, so that neither gains
/// from what the other leaves in the caches.
void compare(const char* row, int size, int repetitions, const Timed& component,
             const Timed& baseline);

}  // namespace tlpacscfg::bench
