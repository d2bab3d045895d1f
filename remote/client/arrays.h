#pragma once

#include <string>
#include <vector>

#include "automation/owned_variant.h"
#include "odbc/table.h"

namespace tlpacscfg::client {

/// A two-dimensional array (column, row) of texts and Nulls.
OwnedVariant toArray(const Table& table);

OwnedVariant toArray(const std::vector<std::wstring>& texts);

}  // namespace tlpacscfg::client
