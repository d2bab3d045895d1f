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

/// All rows of the statement's open result, every cell as text. Buffers follow from the columns'
/// metadata; when a cell turns out longer, the statement is executed again with larger ones, so
/// that no text is ever cut. Throws ResultTooLarge as soon as the cells, each counted with a few
/// characters more than its text has, pass the limit.
Table fetchAll(const StatementHandle& statement, RowArrays rowArrays,
               const std::function<void()>& executeAgain,
               std::size_t mostCharacters = kNoResultLimit);

}  // namespace tlpacscfg::odbc
