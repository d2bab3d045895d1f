#pragma once

#include <string>
#include <utility>

#include "support/runtime_error.h"

namespace tlpacscfg {

/// An error of a row that was read, with the row's place for the log. To everybody else it is the
/// error itself.
class RowError : public RunTimeError {
 public:
  RowError(const RunTimeError& error, std::wstring place)
      : RunTimeError(error), place_(std::move(place)) {}

  /// "row 3 (config_id 7)"
  const std::wstring& place() const { return place_; }

 private:
  std::wstring place_;
};

}  // namespace tlpacscfg
