#include <windows.h>
#include <objbase.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <stdexcept>
#include <string>
#include <vector>

#include "benchmarks/measurements.h"
#include "support/system.h"
#include "support/text.h"

using namespace tlpacscfg;
using namespace tlpacscfg::bench;

namespace {

/// The sites and repetitions of a run.
struct Plan {
  std::vector<Site> sites;
  std::vector<Site> serverSites;  ///< Smaller, because the stand-in is slow.
  int repetitions;                ///< Of measurements that do not depend on the site.
  int idleSeconds;
};

const Site kSmallest = {L"TlBench10", 10, 10, 1};

/// Growth is measured from a quarter of the largest site to the largest site, which has as many
/// workstations as 16-bit positions allow and all configuration identifiers but one.
Plan planFor(std::wstring_view scale) {
  if (scale == L"smallest") return {{kSmallest}, {{L"TlBenchServer", 10, 10, 1}}, 1, 1};
  return {{{L"TlBench1000", 1'000, 1'000, 11},
           {L"TlBench8192", 8'192, 8'192, 5},
           {L"TlBench32767", 32'766, 32'767, 5}},
          {{L"TlBenchServer", 1'000, 1'000, 5}, {L"TlBenchServer", 4'000, 4'000, 5}},
          15,
          10};
}

void announce(const char* what, const Site& site) {
  std::fprintf(stderr, "Measuring %s with %d workstations\n", what, site.workstations);
}

void measureAll(const Plan& plan, wchar_t** arguments) {
  std::fprintf(stderr, "Making the sites\n");
  const bool listed = plan.sites.front().dataSource == kSmallest.dataSource;
  if (!listed) makeSite(kSmallest);
  for (const Site& site : plan.sites) makeSite(site);
  for (const Site& site : plan.sites) {
    announce("SQLite", site);
    measureMemory(site);
    measureLoading(site, Path::Direct);
    measureListWindow(site);
    measureSettingsWindow(site, kSmallest);
    measureSaving(site, Path::Direct);
    announce("the remote service", site);
    measureServiceLoading(site);
    measureServiceSaving(site);
  }
  for (const Site& site : plan.serverSites) {
    announce("the stand-in for SQL Server", site);
    makeServerSite(site);
    measureLoading(site, Path::Server);
    measureSaving(site, Path::Server);
  }
  std::fprintf(stderr, "Measuring what does not depend on the site\n");
  measureLog(arguments[0], plan.repetitions);
  measureCreation(arguments[1], arguments[2], plan.repetitions);
  measureIdle(plan.sites.back(), plan.idleSeconds);
}

void run(int count, wchar_t** arguments) {
  const Plan plan = planFor(arguments[1]);
  const std::wstring_view command = arguments[2];
  if (command == L"all" && count == 6) return measureAll(plan, arguments + 3);
  if (command == L"first-opening" && count == 4) {
    const std::wstring_view series = arguments[3];
    return measureFirstOpening(plan.sites.back(),
                               series == L"component" ? Series::Component : Series::Baseline);
  }
  throw std::runtime_error("Run ./bench.");
}

}  // namespace

/// tlpacscfg_bench full|smallest all FOLDER COMPONENT EMPTY-COMPONENT
/// tlpacscfg_bench full|smallest first-opening component|baseline
int wmain(int count, wchar_t** arguments) {
  system::showMessage = [](const system::Message& message) -> system::Answer {
    // The question whether to save what the rules changed.
    if (message.buttons == system::Buttons::YesNoCancel) return system::Answer::No;
    std::fprintf(stderr, "A message box: %s\n", toUtf8(message.text).c_str());
    std::_Exit(1);
  };
  try {
    if (count < 4) throw std::runtime_error("Run ./bench.");
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    run(count, arguments);
    return 0;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
  }
}
