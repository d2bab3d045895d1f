#pragma once

#include <optional>
#include <string>
#include <vector>

#include "config/pacs_configuration.h"

namespace tlpacscfg::test {

/// A record in which no two stored fields are alike. It is new and unchanged.
clsPACSConfiguration distinctRecord();

/// The values of distinctRecord in load order: as a row's cells, and as the arguments of
/// FillFields.
std::vector<std::optional<std::wstring>> distinctCells();
FieldValues distinctValues();

/// Compares all fields, the three that are not stored included.
void expectEqualRecords(const clsPACSConfiguration& found, const clsPACSConfiguration& expected);

}  // namespace tlpacscfg::test
