#pragma once

#include <string>

#include "benchmarks/site.h"

/// Each prints the values of its rows of the report.
namespace tlpacscfg::bench {

/// `repetitions` suits the site's size.
void measureLoading(const Site& site, int repetitions);
void measureMemory(const Site& site);
void measureListWindow(const Site& site, int repetitions);
void measureSettingsWindow(const Site& site, int repetitions);
void measureSaving(const Site& site, int repetitions);

void measureLog(const std::wstring& folder, int repetitions);
void measureCreation(const std::wstring& component, const std::wstring& emptyComponent,
                     int repetitions);
void measureIdle(const Site& site);

}  // namespace tlpacscfg::bench
