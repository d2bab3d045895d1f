#pragma once

#include <functional>

#include "benchmarks/site.h"

namespace tlpacscfg::bench {

enum class Series { Component, Baseline };

/// How long the action takes, in seconds.
double secondsOf(const std::function<void()>& action);

/// Prints one measured value for the report. A measurement without a baseline has values only.
void record(const char* measurement, int workstations, Series series, double value);

/// Times both a number of times, in turn, each with its preparation, which is not timed.
struct Timed {
  std::function<void()> action;
  std::function<void()> prepare = [] {};
};
void compare(const char* measurement, const Site& site, int repetitions, const Timed& component,
             const Timed& baseline);

}  // namespace tlpacscfg::bench
