#pragma once

#include <string>
#include <vector>

#include "faults/journeys.h"

namespace tlpacscfg::test {

/// A fault at each of the steps, and what it must lead to. In the texts {number} and {description}
/// stand for the error's.
struct Cell {
  Fault fault;
  int firstStep;
  int lastStep;
  std::wstring result;
  std::wstring box;     ///< The text of the only message box; empty for none.
  std::wstring stored;  ///< "old", "new", or what lies between; then how many marks, unless usual.
  std::wstring memory;
};

/// A fault that a journey need not be put to.
struct Exemption {
  Fault fault;
  const char* reason;
};

/// How many steps of each kind a journey has.
struct Steps {
  int lines = 0;  ///< Of the log.
  int rowsRead = 0;
  int rowsWritten = 0;
  int commands = 0;
};

/// One journey: how it ends undisturbed, and what becomes of it with each fault.
struct Chart {
  const char* name;
  JourneyFactory journey;
  std::wstring result;
  std::wstring memory;
  Steps steps;
  std::vector<Cell> cells;
  std::vector<Exemption> exemptions = {};
};

const std::vector<Chart>& matrix();

/// The error that a fault makes.
struct ErrorOfFault {
  std::wstring number;
  std::wstring description;
};
ErrorOfFault errorOf(Fault fault);

}  // namespace tlpacscfg::test
