#pragma once

#include <functional>

/// Prints the measured values, one a line, for the report.
namespace tlpacscfg::bench {

enum class Series { Component, Baseline };

/// The duration of the action in seconds.
double secondsOf(const std::function<void()>& action);

/// `size` is the site's number of workstations, or 0.
void record(const char* row, int size, Series series, double value);

/// An action to time, and its preparation, which is not timed.
struct Timed {
  std::function<void()> action;
  std::function<void()> prepare = [] {};
};

void measure(const char* row, int size, int repetitions, const Timed& component);

/// Times both in turn. The order alternates, so that neither profits from the caches that the other
/// has filled.
void compare(const char* row, int size, int repetitions, const Timed& component,
             const Timed& baseline);

}  // namespace tlpacscfg::bench
