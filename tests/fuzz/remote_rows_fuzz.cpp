#include "data/tl_comm_client.h"
#include "fuzz/expected_load.h"

using namespace tlpacscfg;
using fuzz::Path;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FuzzedDataProvider input(data, size);
  const bool complete = input.ConsumeIntegralInRange(0, 15) != 0;

  const fuzz::Rows configurations = fuzz::takeConfigurations(input);
  const std::size_t columns =
      complete ? fuzz::kConfigurationColumns
               : input.ConsumeIntegralInRange<std::size_t>(1, fuzz::kConfigurationColumns);
  modTlCommClient.g_objTlCommClient =
      std::make_unique<fuzz::FixedClient>(fuzz::tableOf(configurations, columns), nullptr);
  fuzz::requireSame(fuzz::loadedConfigurations(),
                    fuzz::expectedConfigurations(Path::Remote, configurations, columns),
                    "configurations arrive as the client delivers them");

  const fuzz::Rows workstations = fuzz::takeWorkstations(input);
  const std::size_t listColumns =
      complete ? fuzz::kWorkstationColumns
               : input.ConsumeIntegralInRange<std::size_t>(1, fuzz::kWorkstationColumns);
  modTlCommClient.g_objTlCommClient =
      std::make_unique<fuzz::FixedClient>(fuzz::tableOf(workstations, listColumns), nullptr);
  fuzz::Load expected = fuzz::expectedWorkstations(Path::Remote, workstations, listColumns);
  // The message box of the remote path names no number.
  if (expected.error) expected.error = -1;
  fuzz::requireSame(fuzz::loadedWorkstations(), expected,
                    "workstations arrive as the client delivers them");
  return 0;
}
