#pragma once

#include <gtest/gtest.h>

#include <iostream>
#include <string>
#include <vector>

#include "faults/commands/command_site.h"

namespace tlpacscfg::test {

/// How a command ends with the fault, or the rival, at each of its steps: one letter for each.
template <class Fault>
struct ChartRow {
  Command command;
  Fault fault;
  std::string endings;
};

template <class Fault>
std::string nameOf(const ChartRow<Fault>& row) {
  return std::string(nameOf(row.command)) + ", " + nameOf(row.fault);
}

template <class Fault>
void PrintTo(const ChartRow<Fault>& row, std::ostream* stream) {
  *stream << nameOf(row);
}

/// A row for each rival, in their order.
inline std::vector<ChartRow<Rival>> rivalRows(const std::vector<std::string>& endings) {
  std::vector<ChartRow<Rival>> rows;
  for (const Rival& rival : rivals()) {
    rows.push_back({rival.command, rival, endings.at(rows.size())});
  }
  return rows;
}

/// `letterAt` runs the command with the fault at the step, and gives the letter of its ending.
template <class Row, class LetterAt>
void expectEndings(const Row& row, const std::vector<int>& steps, LetterAt letterAt) {
  std::string found;
  for (const int step : steps) {
    SCOPED_TRACE("step " + std::to_string(step));
    found += letterAt(step);
  }
  EXPECT_EQ(found, row.endings);
  std::cout << found.size() << " cells\n";
}

/// Instantiates the tests of a suite for the rows of a chart, or for the commands.
#define TL_FOR_EACH(suite, rows)                                   \
  INSTANTIATE_TEST_SUITE_P(Rows, suite, ::testing::ValuesIn(rows), \
                           [](const auto& row) { return inOneWord(nameOf(row.param)); })

}  // namespace tlpacscfg::test
