#pragma once

#include "config/option_tables.h"
#include "ui/settings/values/settings_controls.h"

namespace tlpacscfg {

/// The entries of a list in their order; empty for other controls and for the list of XML files,
/// which is filled when the window opens.
CodeTable optionsOf(Control control);

}  // namespace tlpacscfg
