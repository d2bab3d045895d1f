#pragma once

#include <cstddef>

#include "odbc/table.h"

namespace tlpacscfg {

/// A forward-only cursor over the rows of a statement. Once it is closed, every call throws
/// ObjectNotSet.
class ResultSet {
 public:
  explicit ResultSet(Table table);

  bool EndOfData() const;
  /// From the current row on.
  std::size_t RowsLeft() const;
  void MoveNext();
  /// The cell of the current row; throws SubscriptOutOfRange for a column that does not exist.
  Cell Column(std::size_t index) const;
  void Close();

 private:
  void checkOpen() const;

  Table table_;
  std::size_t row_ = 0;
  bool open_ = true;
};

}  // namespace tlpacscfg
