#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "config/pacs_configurations.h"

namespace tlpacscfg {

struct ConfigurationChoice {
  std::int16_t configID;  ///< 0 for none.
  std::wstring text;

  bool operator==(const ConfigurationChoice&) const = default;
};

/// What can be assigned to a workstation: none, and every configuration but the placeholder.
std::vector<ConfigurationChoice> configurationChoices(const colPACSConfiguration& configurations);

/// -1 for a configuration that no longer exists.
int positionOf(const std::vector<ConfigurationChoice>& choices, std::int16_t configID);

}  // namespace tlpacscfg
