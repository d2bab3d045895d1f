#pragma once

#include <cstddef>
#include <functional>
#include <limits>
#include <stdexcept>

#include "odbc/handle.h"
#include "odbc/table.h"

namespace tlpacscfg::odbc {

enum class RowArrays { Supported, Unsupported };

class ResultTooLarge : public std::length_error {
 public:
  ResultTooLarge() : std::length_error("The result is larger than allowed.") {}
};

inline constexpr std::size_t kNoResultLimit = std::numeric_limits<std::size_t>::max();

/// Of the statement's open result; 0 when it has none.
SQLUSMALLINT columnCount(const StatementHandle& statement);

/// Both give all rows of the statement's open result, every cell as text, which is never cut. They
/// throw ResultTooLarge when the cells pass the limit; each counts as its text and a few characters
/// more.

/// The columns' metadata give the size of the buffers; when a cell is longer, the statement is
/// executed again with larger buffers.
Table fetchBlocks(const StatementHandle& statement, RowArrays rowArrays,
                  const std::function<void()>& executeAgain, std::size_t maxCharacters);

/// Reads one cell after another, which takes more calls.
Table fetchCells(const StatementHandle& statement, std::size_t maxCharacters);

}  // namespace tlpacscfg::odbc
