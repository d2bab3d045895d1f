#pragma once

#include "ui/settings/values/settings_controls.h"

namespace tlpacscfg {

/// The resource id of a control of the settings window.
int idOf(Control control);

}  // namespace tlpacscfg
