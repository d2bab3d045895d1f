#pragma once

#include "ui/resource.h"
#include "ui/settings/values/settings_controls.h"

namespace tlpacscfg {

/// The resource id of a control of the settings window. The ids count up in the order of the table.
constexpr int idOf(Control control) {
  return IDC_frmPACSSettings_lblConfig + static_cast<int>(control);
}

}  // namespace tlpacscfg
