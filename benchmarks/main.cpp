#include <windows.h>
#include <objbase.h>

#include <cstdio>
#include <cstdlib>
#include <exception>

#include "benchmarks/measurements.h"
#include "benchmarks/measuring.h"
#include "support/system.h"
#include "support/text.h"

using namespace tlpacscfg;
using namespace tlpacscfg::bench;

namespace {

struct Scale {
  Site site;
  int repetitions;
};

/// The largest collection that 16-bit positions reach, and the most identifiers that leave one
/// free.
const Scale kScales[] = {
    {{L"TlBenchSmall", 10, 10}, 30},
    {{L"TlBenchMedium", 1'000, 1'000}, 15},
    {{L"TlBenchFull", 32'766, 32'767}, 5},
};

void measureAll(wchar_t** arguments) {
  const std::wstring schema = arguments[0];
  const std::wstring folder = arguments[1];
  for (const Scale& scale : kScales) {
    std::fprintf(stderr, "Making a site of %d workstations\n", scale.site.workstations);
    makeSite(scale.site, schema);
  }
  for (const Scale& scale : kScales) {
    std::fprintf(stderr, "Measuring with %d workstations\n", scale.site.workstations);
    measureMemory(scale.site);
    measureLoading(scale.site, scale.repetitions);
    measureListWindow(scale.site, scale.repetitions);
    measureSettingsWindow(scale.site, scale.repetitions);
    measureSaving(scale.site, scale.repetitions);
  }
  std::fprintf(stderr, "Measuring what does not depend on the site\n");
  measureLog(folder, 5);
  measureCreation(arguments[2], arguments[3], 20);
  measureIdle(kScales[2].site);
}

}  // namespace

/// tlpacscfg_bench SCHEMA FOLDER COMPONENT EMPTY-COMPONENT
int wmain(int count, wchar_t** arguments) {
  if (count != 5) {
    std::fprintf(stderr, "Run ./bench.\n");
    return 2;
  }
  system::showMessage = [](const system::Message& message) -> system::Answer {
    // Whether to save what the rules changed.
    if (message.buttons == system::Buttons::YesNoCancel) return system::Answer::No;
    std::fprintf(stderr, "A message box: %s\n", toUtf8(message.text).c_str());
    std::_Exit(1);
  };
  try {
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    measureAll(arguments + 1);
    return 0;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
  }
}
