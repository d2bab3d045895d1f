#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "faults/matrix/scenarios.h"

namespace tlpacscfg::test {

/// A fault at the first, the middle and the last of the steps, and what it must lead to. In the
/// texts {number} and {description} stand for the error's.
struct Cell {
  Fault fault;
  int firstStep;
  int lastStep;
  std::wstring result;
  std::wstring box;     ///< The text of the only message box; empty for none.
  std::wstring stored;  ///< "old", "new", or what lies between; then how many marks, unless usual.
  std::wstring memory;
};

/// One scenario: what it does undisturbed, and what becomes of it with each fault.
struct Chart {
  const char* name;
  ScenarioFactory scenario;
  std::wstring result;
  std::wstring memory;
  int lines;                 ///< Of the log.
  std::string calls;         ///< As OdbcCalls notes them.
  std::wstring writes = {};  ///< As Scenario::writes tells them.
  std::vector<Cell> cells = {};
};

inline void PrintTo(const Chart& chart, std::ostream* stream) { *stream << chart.name; }

const std::vector<Chart>& matrix();

/// The error that a fault makes.
struct ErrorOfFault {
  std::wstring number;
  std::wstring description;
};
ErrorOfFault errorOf(Fault fault);

}  // namespace tlpacscfg::test
