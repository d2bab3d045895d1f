#pragma once

#include <string>
#include <utility>

#include "support/runtime_error.h"

namespace tlpacscfg {

/// An error in a row that was read. It adds the row's position, for the log, to the error.
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
