#pragma once

#include <string>

#include "benchmarks/measuring.h"
#include "benchmarks/site.h"

/// Each measures some rows of the report.
namespace tlpacscfg::bench {

/// For the way Direct or Server.
void measureLoading(const Site& site, Way way);
void measureSaving(const Site& site, Way way);

/// Beside the direct connection.
void measureServiceLoading(const Site& site);
void measureServiceSaving(const Site& site);

void measureMemory(const Site& site);
void measureListWindow(const Site& site);
/// Beside a window with few configurations.
void measureSettingsWindow(const Site& site, const Site& smallest);

/// Once: the first window of a process opens more slowly.
void measureFirstOpening(const Site& site, Series series);

void measureLog(const std::wstring& folder, int repetitions);
void measureCreation(const std::wstring& component, const std::wstring& emptyComponent,
                     int repetitions);
void measureIdle(const Site& site, int seconds);

}  // namespace tlpacscfg::bench
