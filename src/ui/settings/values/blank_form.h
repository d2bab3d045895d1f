#pragma once

#include "ui/settings/values/settings_form.h"

namespace tlpacscfg {

/// The state of a new, empty configuration. The list of XML files and the status texts stay.
void clearToDefaults(SettingsForm& form);

/// True when nothing was entered into a new configuration.
bool isBlank(const SettingsForm& form);

}  // namespace tlpacscfg
