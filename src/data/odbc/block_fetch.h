#pragma once

#include <functional>

#include "data/odbc/handle.h"
#include "data/table.h"

namespace tlpacscfg::odbc {

enum class RowArrays { Supported, Unsupported };

/// All rows of the statement's open result, every cell as text. Buffers follow from the columns'
/// metadata; when a cell turns out longer, the statement is executed again with larger ones, so
/// that no text is ever cut.
Table fetchAll(const StatementHandle& statement, RowArrays rowArrays,
               const std::function<void()>& executeAgain);

}  // namespace tlpacscfg::odbc
