#include "data/result_set.h"

#include <utility>

#include "support/runtime_error.h"

namespace tlpacscfg {

ResultSet::ResultSet(Table table) : table_(std::move(table)) {}

bool ResultSet::EndOfData() const {
  checkOpen();
  return row_ >= table_.rows();
}

std::size_t ResultSet::RowsLeft() const { return EndOfData() ? 0 : table_.rows() - row_; }

void ResultSet::MoveNext() {
  checkOpen();
  ++row_;
}

Cell ResultSet::Column(std::size_t index) const {
  checkOpen();
  if (index >= table_.columns() || EndOfData()) raise(ErrorNumber::SubscriptOutOfRange);
  return table_.at(index, row_);
}

void ResultSet::Close() {
  checkOpen();
  open_ = false;
  table_ = Table();
}

void ResultSet::checkOpen() const {
  if (!open_) raise(ErrorNumber::ObjectNotSet);
}

}  // namespace tlpacscfg
