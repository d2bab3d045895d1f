#pragma once

#include <string>

#include "benchmarks/measuring.h"
#include "benchmarks/site.h"

/// Each function measures some rows of the report.
namespace tlpacscfg::bench {

/// Only for Direct and Server.
void measureLoading(const Site& site, Path path);
void measureSaving(const Site& site, Path path);

/// Compared with the direct connection.
void measureServiceLoading(const Site& site);
void measureServiceSaving(const Site& site);

void measureMemory(const Site& site);
void measureListWindow(const Site& site);
/// Compared with a window with few configurations.
void measureSettingsWindow(const Site& site, const Site& smallest);

/// Measured once, because the first window of a process opens more slowly.
void measureFirstOpening(const Site& site, Series series);

void measureLog(const std::wstring& folder, int repetitions);
void measureCreation(const std::wstring& component, const std::wstring& emptyComponent,
                     int repetitions);
void measureIdle(const Site& site, int seconds);

}  // namespace tlpacscfg::bench
