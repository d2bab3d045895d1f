#include "faults/matrix.h"

#include <algorithm>
#include <iostream>

#include "log/log_support.h"
#include "support/text.h"

namespace tlpacscfg::test {
namespace {

/// The name of a state between the two.
std::wstring nameOf(const Journey& journey, const SiteState& before, const SiteState& after) {
  const SiteState now = journey.siteState();
  const bool old = now.rows == before.rows;
  std::wstring name = old ? L"old" : now.rows == after.rows ? L"new" : journey.outline();
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

void expectMessages(const std::vector<system::Message>& messages, const std::wstring& box) {
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

/// Goes the journey without a fault, and returns what it leaves in the database.
SiteState goUndisturbed(const Chart& chart) {
  const std::unique_ptr<Journey> journey = chart.journey();
  journey->start();
  journey->arrange(Fault::None, 0);
  EXPECT_EQ(journey->go(), chart.result);
  EXPECT_EQ(journey->memory(), chart.memory);
  EXPECT_EQ(journey->linesLogged(), chart.steps.lines);
  expectMessages(journey->takeMessages(), {});
  return journey->siteState();
}

void runCell(const Chart& chart, const Cell& cell, int step, const SiteState& after) {
  SCOPED_TRACE(std::string(chart.name) + ", " + toUtf8(nameOf(cell.fault)) + ", step " +
               std::to_string(step));
  const std::unique_ptr<Journey> journey = chart.journey();
  journey->start();
  const SiteState before = journey->siteState();

  journey->arrange(cell.fault, step);
  EXPECT_EQ(journey->go(), withError(cell.result, cell.fault));
  EXPECT_TRUE(journey->faultBegan());
  expectMessages(journey->takeMessages(), withError(cell.box, cell.fault));
  EXPECT_EQ(journey->memory(), cell.memory);
  journey->relent();
  EXPECT_EQ(nameOf(*journey, before, after), cell.stored);

  journey->startAgain();
  EXPECT_EQ(journey->go(), chart.result);
  expectMessages(journey->takeMessages(), {});
  EXPECT_EQ(journey->memory(), chart.memory);
  const SiteState atLast = journey->siteState();
  EXPECT_EQ(atLast.rows, after.rows);
  EXPECT_GE(atLast.marks, after.marks);
}

int runChart(const Chart& chart) {
  const SiteState after = goUndisturbed(chart);
  int count = 0;
  for (const Cell& cell : chart.cells) {
    for (int step = cell.firstStep; step <= cell.lastStep; ++step) {
      runCell(chart, cell, step, after);
      ++count;
    }
  }
  std::cout << chart.name << ": " << count << " cells\n";
  return count;
}

int stepsOf(const Chart& chart, Fault fault) {
  switch (fault) {
    case Fault::None:
      return 0;
    case Fault::LogUnwritable:
    case Fault::LogDiskFull:
      return chart.steps.lines;
    case Fault::Refused:
      return chart.steps.rowsWritten;
    case Fault::Unreadable:
    case Fault::BadValue:
      return chart.steps.rowsRead;
    default:
      return chart.steps.commands;
  }
}

const Chart& chartNamed(const std::string& name) {
  return *std::ranges::find_if(matrix(), [&](const Chart& chart) { return chart.name == name; });
}

TEST(FaultMatrixTest, EveryStepOfEveryJourneyMeetsEveryFault) {
  for (const Chart& chart : matrix()) {
    for (int i = 1; i <= static_cast<int>(Fault::FileGone); ++i) {
      const auto fault = static_cast<Fault>(i);
      SCOPED_TRACE(std::string(chart.name) + ", " + toUtf8(nameOf(fault)));
      const bool exempt = std::ranges::any_of(
          chart.exemptions, [&](const Exemption& exemption) { return exemption.fault == fault; });
      std::vector<int> steps;
      for (const Cell& cell : chart.cells) {
        if (cell.fault != fault) continue;
        for (int step = cell.firstStep; step <= cell.lastStep; ++step) steps.push_back(step);
      }
      std::vector<int> expected;
      for (int step = 1; step <= (exempt ? 0 : stepsOf(chart, fault)); ++step) {
        expected.push_back(step);
      }
      std::ranges::sort(steps);
      EXPECT_EQ(steps, expected);
    }
  }
}

TEST(FaultMatrixTest, LoadingAtInit) { EXPECT_EQ(runChart(chartNamed("Init")), 18); }

TEST(FaultMatrixTest, InsertingAConfiguration) {
  EXPECT_EQ(runChart(chartNamed("insert a configuration")), 22);
}

TEST(FaultMatrixTest, UpdatingAConfiguration) {
  EXPECT_EQ(runChart(chartNamed("update a configuration")), 22);
}

TEST(FaultMatrixTest, SavingAllConfigurations) {
  EXPECT_EQ(runChart(chartNamed("save three configurations")), 63);
}

TEST(FaultMatrixTest, DeletingAConfiguration) {
  EXPECT_EQ(runChart(chartNamed("delete a configuration")), 18);
}

TEST(FaultMatrixTest, AssigningOneWorkstation) {
  EXPECT_EQ(runChart(chartNamed("assign 1 workstation")), 21);
}

TEST(FaultMatrixTest, AssigningAHundredWorkstations) {
  EXPECT_EQ(runChart(chartNamed("assign 100 workstations")), 219);
}

TEST(FaultMatrixTest, AssigningAHundredAndOneWorkstations) {
  EXPECT_EQ(runChart(chartNamed("assign 101 workstations")), 230);
}

TEST(FaultMatrixTest, AssigningTwoHundredAndFiftyWorkstations) {
  EXPECT_EQ(runChart(chartNamed("assign 250 workstations")), 537);
}

TEST(FaultMatrixTest, AssigningTwoHundredAndFiftyWorkstationsForTheFirstTime) {
  EXPECT_EQ(runChart(chartNamed("assign 250 workstations for the first time")), 4);
}

TEST(FaultMatrixTest, TestingTheConnection) {
  EXPECT_EQ(runChart(chartNamed("test the connection")), 6);
}

TEST(FaultMatrixTest, NumberingAConfiguration) {
  EXPECT_EQ(runChart(chartNamed("number a configuration")), 14);
}

}  // namespace
}  // namespace tlpacscfg::test
