#pragma once

#include "config/pacs_configuration.h"

namespace tlpacscfg::test {

/// A record in which no two stored fields are alike. It is new and unchanged.
clsPACSConfiguration distinctRecord();

/// The values of distinctRecord as the arguments of FillFields.
FieldValues distinctValues();

/// Compares all fields, the three that are not stored included.
void expectEqualRecords(const clsPACSConfiguration& found, const clsPACSConfiguration& expected);

}  // namespace tlpacscfg::test
