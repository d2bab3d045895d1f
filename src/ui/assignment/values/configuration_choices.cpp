#include "ui/assignment/values/configuration_choices.h"

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
  // Of several with one identifier, which only a host can make, the last.
  for (std::size_t i = choices.size(); i-- > 0;) {
    if (choices[i].configID == configID) return static_cast<int>(i);
  }
  return -1;
}

}  // namespace tlpacscfg
