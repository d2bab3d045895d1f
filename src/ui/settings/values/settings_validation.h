#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "config/pacs_configurations.h"
#include "ui/settings/values/settings_form.h"

namespace tlpacscfg {

struct Validation {
  /// To be shown one after the other; empty when the controls may be stored.
  std::vector<std::wstring> messages;
  /// The port is not a number and the format does not use it: it becomes "0" without a message.
  bool resetPort = false;
};

/// The checks before a configuration is stored. A failed check of the microphone buttons skips the
/// check of the description; all others always run.
Validation ValidData(const SettingsForm& form, const colPACSConfiguration& configurations,
                     std::int16_t currentID);

}  // namespace tlpacscfg
