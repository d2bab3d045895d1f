#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "odbc/table.h"

/// For trying and testing only: Debian's driver for Access files (mdbtools). It knows no ORDER BY
/// and no doubled quotes, compares texts with their letter case, and fetches one row at a time. A
/// site runs Microsoft's driver, which takes each statement as it is and needs nothing of this
/// file.
namespace tlpacscfg {

/// A SELECT in two steps: a statement that the driver understands, and what is left to do with its
/// rows.
struct AccessReaderQuery {
  struct Condition {
    std::size_t column;
    std::wstring value;
  };

  std::wstring statement;  ///< Fetches the wanted columns, then those only compared or sorted by.
  std::size_t wantedColumns = 0;
  std::vector<Condition> conditions;  ///< All must hold, without regard to letter case.
  std::vector<std::size_t> orderBy;

  /// The wanted columns of the rows that match, in order: NULL, then numbers by value, then texts.
  Table apply(const Table& fetched) const;
};

/// Throws TypeMismatch for a statement that is not a plain SELECT from one table.
AccessReaderQuery accessReaderQueryFor(std::wstring_view sql);

}  // namespace tlpacscfg
