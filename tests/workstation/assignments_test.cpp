#include "workstation/assignments.h"

#include <algorithm>

#include "data/tl_comm_client.h"
#include "harness/core_fixture.h"
#include "harness/errors.h"
#include "harness/fake_client.h"
#include "odbc/error.h"

namespace tlpacscfg::test {
namespace {

class AssignmentsTest : public SiteTest, public ::testing::WithParamInterface<Path> {
 protected:
  void load(int count) {
    for (int i = 1; i <= count; ++i) {
      const std::wstring name = nameOf(i);
      addWorkstation(name);
      assign(name, L"'1'");
    }
    connect();
    workstations.GetWorkstationsList();
    if (GetParam() == Path::Remote) client = connectSiteClient();
  }

  static std::wstring nameOf(int i) { return L"PC-" + std::to_wstring(i); }

  clsWorkstation& workstation(int i) { return *workstations.ColWorkStations->find(nameOf(i)); }

  void assignElsewhere(int i, const std::wstring& value) {
    site.run(L"update System_workstation_cfg set key_value = '" + value + L"' where pc_name = '" +
             nameOf(i) + L"'");
  }
  std::wstring stored(int i) {
    const ProbeRows rows = site.rows(
        L"select key_value from System_workstation_cfg where pc_name = '" + nameOf(i) + L"'");
    return rows.empty() ? L"none" : rows[0][0].value_or(L"Null");
  }
  std::wstring marks() { return *site.value(L"select count(*) from System_offline_db_updates"); }

  std::vector<AssignmentConflict> save(const std::vector<AssignmentConflict>& overruled = {}) {
    return saveAssignments(workstations, overruled, [this](std::size_t done, std::size_t total) {
      progress.push_back({done, total});
    });
  }

  colWorkstation workstations;
  std::shared_ptr<ClientScript> client;
  std::vector<std::pair<std::size_t, std::size_t>> progress;
};

TEST_P(AssignmentsTest, WhatWasAssignedHereIsStoredWithOneMark) {
  load(3);
  workstation(2).configID = 7;
  EXPECT_TRUE(save().empty());
  EXPECT_EQ(stored(1), L"1");
  EXPECT_EQ(stored(2), L"7");
  EXPECT_EQ(marks(), L"1");
  EXPECT_TRUE(save().empty()) << "What was stored is no change any more.";
}

TEST_P(AssignmentsTest, AWorkstationThatOnlySomebodyElseReassignedKeepsThat) {
  load(3);
  workstation(2).configID = 7;
  assignElsewhere(1, L"5");
  EXPECT_TRUE(save().empty());
  EXPECT_EQ(stored(1), L"5");
  EXPECT_EQ(stored(2), L"7");
  EXPECT_EQ(workstation(1).configID, 5);
}

TEST_P(AssignmentsTest, AWorkstationReassignedByBothIsAConflictAndNothingIsWritten) {
  load(3);
  workstation(1).configID = 7;
  workstation(2).configID = 7;
  assignElsewhere(2, L"5");
  EXPECT_EQ(save(), (std::vector<AssignmentConflict>{{L"PC-2", 7, L"5"}}));
  EXPECT_EQ(stored(1), L"1");
  EXPECT_EQ(stored(2), L"5");
  EXPECT_EQ(marks(), L"0");
}

TEST_P(AssignmentsTest, TheSameChoiceByBothIsNoConflict) {
  load(1);
  workstation(1).configID = 7;
  assignElsewhere(1, L"7");
  EXPECT_TRUE(save().empty());
  EXPECT_EQ(stored(1), L"7");
}

TEST_P(AssignmentsTest, AnOverruledConflictStoresWhatWasAssignedHere) {
  load(2);
  workstation(1).configID = 7;
  assignElsewhere(1, L"5");
  EXPECT_TRUE(save(save()).empty());
  EXPECT_EQ(stored(1), L"7");
}

TEST_P(AssignmentsTest, OneMoreChangeSinceAConflictWasOverruledIsAnotherConflict) {
  load(1);
  workstation(1).configID = 7;
  assignElsewhere(1, L"5");
  const auto conflicts = save();
  assignElsewhere(1, L"6");
  EXPECT_EQ(save(conflicts), (std::vector<AssignmentConflict>{{L"PC-1", 7, L"6"}}));
}

TEST_P(AssignmentsTest, YieldingToAConflictKeepsTheStoredAssignment) {
  load(1);
  workstation(1).configID = 7;
  assignElsewhere(1, L"5");
  for (const AssignmentConflict& conflict : save()) yieldTo(conflict, workstations);
  EXPECT_EQ(workstation(1).configID, 5);
  EXPECT_TRUE(save().empty());
  EXPECT_EQ(stored(1), L"5");
}

TEST_P(AssignmentsTest, AWorkstationThatIsGoneGetsNoRowAgain) {
  load(2);
  site.run(L"delete from System_pc_names where pc_name = 'PC-1'");
  site.run(L"delete from System_workstation_cfg where pc_name = 'PC-1'");
  EXPECT_TRUE(save().empty());
  EXPECT_EQ(stored(1), L"none");
  EXPECT_EQ(stored(2), L"1");
}

TEST_P(AssignmentsTest, AWorkstationThatIsGoneAndWasReassignedHereIsAConflict) {
  load(1);
  workstation(1).configID = 7;
  site.run(L"delete from System_pc_names");
  const auto conflicts = save();
  EXPECT_EQ(conflicts, (std::vector<AssignmentConflict>{{L"PC-1", 7, L""}}));
  yieldTo(conflicts[0], workstations);
  EXPECT_TRUE(save().empty());
  EXPECT_EQ(stored(1), L"1") << "Its row was left alone.";
}

TEST_P(AssignmentsTest, AWorkstationThatAHostAddedIsWritten) {
  load(1);
  workstations.AddWS(7, L"PC-9");
  EXPECT_TRUE(save().empty());
  EXPECT_EQ(stored(9), L"7");
}

TEST_P(AssignmentsTest, ANameWithAnUnpairedQuoteIsReportedBeforeAnythingIsSent) {
  load(1);
  workstations.AddWS(7, L"x' /*");
  if (client) client->calls.clear();
  EXPECT_RUNTIME_ERROR(save(), odbc::kOdbcFailed,
                       L"Workstation 'x' /*': Its name holds a single quote. Nothing was saved.");
  EXPECT_EQ(marks(), L"0");
  if (!client) return;
  for (const std::wstring& call : client->calls) {
    EXPECT_FALSE(call.starts_with(L"SQLExecuteText(")) << call.size();
  }
}

TEST_P(AssignmentsTest, ANameWithAPairOfQuotesIsWrittenUnchanged) {
  load(1);
  workstations.AddWS(7, L"O''BRIEN");
  EXPECT_TRUE(save().empty());
  EXPECT_EQ(site.value(L"select key_value from System_workstation_cfg where pc_name = 'O''BRIEN'"),
            L"7");
}

TEST_P(AssignmentsTest, ProgressIsReportedAfterEachCommand) {
  load(250);
  EXPECT_TRUE(save().empty());
  EXPECT_EQ(progress,
            (std::vector<std::pair<std::size_t, std::size_t>>{{100, 250}, {200, 250}, {250, 250}}));
}

INSTANTIATE_TEST_SUITE_P(Paths, AssignmentsTest, ::testing::Values(Path::Direct, Path::Remote),
                         pathName);

class DirectAssignmentsTest : public AssignmentsTest {};
INSTANTIATE_TEST_SUITE_P(Path, DirectAssignmentsTest, ::testing::Values(Path::Direct));

TEST_P(DirectAssignmentsTest, AFailureInTheLastCommandRollsBackTheFirst) {
  load(250);
  for (int i = 1; i <= 250; ++i) workstation(i).configID = 2;
  site.run(
      L"CREATE TRIGGER refuse BEFORE INSERT ON System_workstation_cfg WHEN NEW.pc_name = "
      L"'PC-250' BEGIN SELECT RAISE(ABORT, 'refused'); END");
  EXPECT_THROW(save(), RunTimeError);
  EXPECT_EQ(site.value(L"select count(*) from System_workstation_cfg where key_value = '1'"),
            L"250");
  site.run(L"DROP TRIGGER refuse");
  EXPECT_TRUE(save().empty());
  EXPECT_EQ(site.value(L"select count(*) from System_workstation_cfg where key_value = '2'"),
            L"250");
}

TEST_P(DirectAssignmentsTest, AFailedMarkRollsBackTheAssignments) {
  load(1);
  workstation(1).configID = 2;
  site.run(L"DROP TABLE System_offline_db_updates");
  EXPECT_THROW(save(), RunTimeError);
  EXPECT_EQ(stored(1), L"1");
}

TEST_P(DirectAssignmentsTest, AnAssignmentStoredDifferentlyIsRolledBackAndReported) {
  load(2);
  workstation(2).configID = 7;
  site.run(
      L"CREATE TRIGGER alterOnUpdate AFTER INSERT ON System_workstation_cfg WHEN NEW.pc_name = "
      L"'PC-2' "
      L"BEGIN UPDATE System_workstation_cfg SET key_value = '8' WHERE pc_name = 'PC-2'; END");
  EXPECT_RUNTIME_ERROR(
      save(), odbc::kOdbcFailed,
      L"Workstation 'PC-2': The database keeps the configuration '8' instead of '7'.");
  EXPECT_EQ(stored(2), L"1");
  EXPECT_EQ(marks(), L"0");
}

TEST_P(DirectAssignmentsTest, AnUnreadableAssignmentIsKept) {
  load(2);
  assignElsewhere(1, L"5a");
  EXPECT_TRUE(save().empty());
  EXPECT_EQ(stored(1), L"5a");
}

class RemoteAssignmentsTest : public AssignmentsTest {};
INSTANTIATE_TEST_SUITE_P(Path, RemoteAssignmentsTest, ::testing::Values(Path::Remote));

TEST_P(RemoteAssignmentsTest, ACommandThatFailsStopsTheRest) {
  load(250);
  client->refused = L"PC-100'";
  client->reason = L"The service is gone.";
  client->calls.clear();
  EXPECT_RUNTIME_ERROR(save(), odbc::kOdbcFailed, L"The service is gone.");
  EXPECT_EQ(std::ranges::count_if(
                client->calls,
                [](const std::wstring& call) { return call.starts_with(L"SQLExecuteText("); }),
            1);
}

TEST_P(RemoteAssignmentsTest, WhatAPartialSaveStoredIsNoConflict) {
  for (const std::int16_t second : {std::int16_t{1}, std::int16_t{9}}) {
    SCOPED_TRACE(second);
    load(0);
    site.runAll({L"delete from System_pc_names", L"delete from System_workstation_cfg"});
    workstations = colWorkstation();
    load(250);
    workstation(1).configID = 7;
    client->refused = L"PC-150'";
    EXPECT_THROW(save(), RunTimeError);
    EXPECT_EQ(stored(1), L"7");
    workstation(1).configID = second;
    client->refused.clear();
    EXPECT_TRUE(save().empty()) << "Nobody else assigned it.";
    EXPECT_EQ(stored(1), std::to_wstring(second));
    DisconnectTlCommClient();
  }
}

TEST_P(RemoteAssignmentsTest, WhatAnUnansweredCommandStoredIsNoConflict) {
  load(2);
  workstation(1).configID = 7;
  const auto run = client->execute;
  client->execute = [run](const std::wstring& sql) {
    run(sql);
    throw RunTimeError(1, L"The time is over.");
  };
  EXPECT_THROW(save(), RunTimeError);
  EXPECT_EQ(stored(1), L"7");
  client->execute = run;
  workstation(1).configID = 9;
  EXPECT_TRUE(save().empty());
  EXPECT_EQ(stored(1), L"9");
}

TEST_P(DirectAssignmentsTest, AWorkstationThatAHostAddedCountsAsUse) {
  load(2);
  workstations.AddWS(7, L"HOST-PC");
  SiteCommand command;
  EXPECT_TRUE(isAssigned(command, workstations, 7));
  EXPECT_FALSE(isAssigned(command, workstations, 8));
}

}  // namespace
}  // namespace tlpacscfg::test
