#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "config/pacs_configurations.h"
#include "ui/settings/values/settings_form.h"

namespace tlpacscfg {

struct Validation {
  /// To be shown one after the other; none when the controls may be stored.
  std::vector<std::wstring> messages;
  /// The port is no number, in a format that does not use it: it becomes "0" without a message.
  bool resetPort = false;
};

/// The checks before a configuration is stored. The first failure of the microphone buttons and
/// the description hides the other; every further check still runs.
Validation ValidData(const SettingsForm& form, const colPACSConfiguration& configurations,
                     std::int16_t currentID);

}  // namespace tlpacscfg
