#include "ui/assignment/values/configuration_choices.h"

#include <algorithm>

#include "support/text.h"

namespace tlpacscfg {

std::vector<ConfigurationChoice> configurationChoices(const colPACSConfiguration& configurations) {
  std::vector<ConfigurationChoice> choices = {{0, L"<None>"}};
  for (const auto& configuration : configurations.ColPACSConfigs->items()) {
    const std::int16_t id = configuration->configID;
    if (id > 0) choices.push_back({id, decimal(id) + L" - " + configuration->Description});
  }
  return choices;
}

int positionOf(const std::vector<ConfigurationChoice>& choices, std::int16_t configID) {
  const auto found = std::ranges::find(choices, configID, &ConfigurationChoice::configID);
  return found == choices.end() ? -1 : static_cast<int>(found - choices.begin());
}

}  // namespace tlpacscfg
