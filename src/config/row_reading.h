#pragma once

#include <functional>
#include <memory>

#include "config/pacs_configuration.h"
#include "data/data_path.h"
#include "odbc/table.h"

namespace tlpacscfg {

/// The record of a row, marked as existing and unchanged. `cell` returns the cell of a column in
/// load order. Throws InvalidUseOfNull, TypeMismatch and Overflow for a cell that does not convert,
/// and what `cell` throws.
std::shared_ptr<clsPACSConfiguration> recordOfRow(const std::function<Cell(std::size_t)>& cell,
                                                  CellRules rules);

}  // namespace tlpacscfg
