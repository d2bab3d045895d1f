#include "faults/matrix/matrix.h"

#include <iostream>
#include <set>

#include "faults/commands/command_site.h"
#include "faults/commands/odbc_calls.h"
#include "support/text.h"

namespace tlpacscfg::test {
namespace {

/// Tells which of the two states the site is in, or what it is in between.
std::wstring nameOf(const Scenario& scenario, const SiteState& before, const SiteState& after) {
  const SiteState now = scenario.siteState();
  const bool old = now.rows == before.rows;
  std::wstring name = old ? L"old" : now.rows == after.rows ? L"new" : scenario.outline();
  const int usual = !old && now.rows == after.rows ? after.marks : 0;
  if (now.marks != usual) name += L", marks: " + decimal(now.marks);
  return name;
}

std::wstring withError(std::wstring text, Fault fault) {
  const ErrorOfFault error = errorOf(fault);
  const auto fill = [&text](const std::wstring& place, const std::wstring& value) {
    const std::size_t at = text.find(place);
    if (at != text.npos) text.replace(at, place.size(), value);
  };
  fill(L"{number}", error.number);
  fill(L"{description}", error.description);
  return text;
}

class FaultMatrixTest : public ::testing::TestWithParam<Chart> {
 protected:
  const Chart& chart = GetParam();

  static void expectMessages(const std::vector<system::Message>& messages,
                             const std::wstring& box) {
    if (box.empty()) {
      EXPECT_TRUE(messages.empty()) << toUtf8(messages.front().text);
      return;
    }
    ASSERT_EQ(messages.size(), 1U);
    EXPECT_EQ(messages[0].text, box);
    EXPECT_EQ(messages[0].buttons, system::Buttons::Ok);
    EXPECT_EQ(messages[0].icon, system::Icon::None);
    EXPECT_EQ(messages[0].modality, system::Modality::System);
  }

  /// Returns what it leaves in the database.
  SiteState runUndisturbed() const {
    const std::unique_ptr<Scenario> scenario = chart.scenario();
    scenario->start();
    scenario->plan(Fault::None, 0);
    scenario->noteWrites();
    {
      const OdbcCalls calls;
      EXPECT_EQ(scenario->run(), chart.result);
      EXPECT_EQ(calls.verbs(), chart.calls);
    }
    EXPECT_EQ(scenario->memory(), chart.memory);
    EXPECT_EQ(scenario->linesLogged(), chart.lines);
    EXPECT_EQ(scenario->writes(), chart.writes);
    expectMessages(scenario->takeMessages(), {});
    return scenario->siteState();
  }

  void runCell(const Cell& cell, int step, const SiteState& after) const {
    SCOPED_TRACE(std::string(test::nameOf(cell.fault)) + ", step " + std::to_string(step));
    const std::unique_ptr<Scenario> scenario = chart.scenario();
    scenario->start();
    const SiteState before = scenario->siteState();

    scenario->plan(cell.fault, step);
    EXPECT_EQ(scenario->run(), withError(cell.result, cell.fault));
    EXPECT_TRUE(scenario->faultBegan());
    expectMessages(scenario->takeMessages(), withError(cell.box, cell.fault));
    EXPECT_EQ(scenario->memory(), cell.memory);
    scenario->endFault();
    scenario->expectNoOpenTransaction();
    EXPECT_EQ(nameOf(*scenario, before, after), cell.stored);

    scenario->startAgain();
    EXPECT_EQ(scenario->run(), chart.result);
    expectMessages(scenario->takeMessages(), {});
    EXPECT_EQ(scenario->memory(), chart.memory);
    scenario->expectNoOpenTransaction();
    const SiteState atLast = scenario->siteState();
    EXPECT_EQ(atLast.rows, after.rows);
    EXPECT_GE(atLast.marks, after.marks);
  }
};

TEST_P(FaultMatrixTest, AFaultAtAnyStepLeavesAKnownStateAndTheNextRunSucceeds) {
  const SiteState after = runUndisturbed();
  int count = 0;
  for (const Cell& cell : chart.cells) {
    if (!isPossible(cell.fault)) continue;
    const int middle = (cell.firstStep + cell.lastStep) / 2;
    for (const int step : std::set<int>{cell.firstStep, middle, cell.lastStep}) {
      runCell(cell, step, after);
      ++count;
    }
  }
  std::cout << count << " cells\n";
}

INSTANTIATE_TEST_SUITE_P(Scenarios, FaultMatrixTest, ::testing::ValuesIn(matrix()),
                         [](const auto& chart) { return inOneWord(chart.param.name); });

}  // namespace
}  // namespace tlpacscfg::test
