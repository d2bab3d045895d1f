#pragma once

#include "config/code_tables.h"
#include "ui/settings/values/settings_controls.h"

namespace tlpacscfg {

/// The entries of a list in their order; none for a control that is no list, and for the list of
/// XML files, whose entries are found when the window opens.
CodeTable optionsOf(Control control);

}  // namespace tlpacscfg
