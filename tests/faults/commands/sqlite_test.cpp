
#include <iostream>

#include "faults/commands/command_chart.h"
#include "faults/commands/odbc_calls.h"
#include "faults/commands/sqlite_command_fixture.h"
#include "harness/machine.h"
#include "support/runtime_error.h"
#include "support/text.h"

/// The windows' commands on SQLite, with a fault or a second administrator at every call of the
/// driver: each statement, and each end of a transaction.
namespace tlpacscfg::test {
namespace {

/// The fault lasts from the call on, but a refusal is of that call alone. Nobody can lock what the
/// command has read already, and nobody's lock on writing matters once it has written. A refusal
/// does no harm where the command only asks whether the connection still answers.
const ChartRow<Fault> kSqliteFaults[] = {
    {Command::SaveNew, Fault::Refused, "DUUUUUU"},
    {Command::SaveNew, Fault::Locked, "UUUDDDD"},
    {Command::SaveNew, Fault::WritingLocked, "UUUUDDD"},
    {Command::SaveNew, Fault::CommitLocked, "UUUUUUU"},
    {Command::SaveNew, Fault::ReadOnly, "UUUUUUD"},
    {Command::SaveNew, Fault::FileGone, "UUUUDDD"},
    {Command::SaveChanged, Fault::Refused, "DUUUUU"},
    {Command::SaveChanged, Fault::Locked, "UUDDDD"},
    {Command::SaveChanged, Fault::WritingLocked, "UUUDDD"},
    {Command::SaveChanged, Fault::CommitLocked, "UUUUUU"},
    {Command::SaveChanged, Fault::ReadOnly, "UUUUUD"},
    {Command::SaveChanged, Fault::FileGone, "UUUDDD"},
    {Command::Delete, Fault::Refused, "DUDDUUUUUU"},
    {Command::Delete, Fault::Locked, "UUDUUDDDDD"},
    {Command::Delete, Fault::WritingLocked, "UUUUUUUDDD"},
    {Command::Delete, Fault::CommitLocked, "UUUUUUUUUU"},
    {Command::Delete, Fault::ReadOnly, "UUUUUUUUUD"},
    {Command::Delete, Fault::FileGone, "UUUUUUUDDD"},
    {Command::Assign, Fault::Refused, "DUUUUUUU"},
    {Command::Assign, Fault::Locked, "UUDDDDDD"},
    {Command::Assign, Fault::WritingLocked, "UUUDDDDD"},
    {Command::Assign, Fault::CommitLocked, "UUUUUUUU"},
    {Command::Assign, Fault::ReadOnly, "UUUUUUUD"},
    {Command::Assign, Fault::FileGone, "UUUDDDDD"},
};

class SqliteFaultTest : public SqliteCommandTest,
                        public ::testing::WithParamInterface<ChartRow<Fault>> {};

TEST_P(SqliteFaultTest, TheSiteIsOldOrNewAndTheSameCommandSucceedsAfterwards) {
  const auto command = GetParam().command;
  const auto fault = GetParam().fault;
  if (!isPossible(fault)) leaveOut("Windows does not move a file that is in use");
  const std::wstring done = undisturbed(command);
  expectEndings(GetParam(), callsOf(command), [&](int call) {
    begin(command);
    DatabaseFault databaseFault;
    EXPECT_TRUE(giveWith(call, OdbcMoment::Before, [&] {
      if (fault == Fault::Refused) return OdbcCalls::refuseThisCall();
      databaseFault.begin(fault, administrator->host->path.connection);
    }));
    databaseFault.end();
    const char ending = letter(done);
    if (ending != kDone) expectSucceedsNow(done);
    return ending;
  });
}

TL_FOR_EACH(SqliteFaultTest, kSqliteFaults);

class SqliteRivalTest : public SqliteCommandTest,
                        public ::testing::WithParamInterface<ChartRow<Rival>> {
 protected:
  /// False when the command holds the rows.
  bool rivalChangesSite() {
    const auto connection = anotherConnection();
    connection->query(L"BEGIN");
    try {
      for (const std::wstring& statement : statementsOf(GetParam().fault)) {
        connection->query(statement);
      }
      connection->query(L"COMMIT");
      return true;
    } catch (const RunTimeError&) {
      connection->query(L"ROLLBACK");
      return false;
    }
  }
};

TEST_P(SqliteRivalTest, ARivalsChangeIsAskedAboutOrAppliedAfterwardsAndNeverLost) {
  const auto command = GetParam().command;
  const auto& rival = GetParam().fault;
  expectEndings(GetParam(), callsOf(command), [&](int call) {
    begin(command);
    bool came = false;
    EXPECT_TRUE(giveWith(call, OdbcMoment::Before, [&] { came = rivalChangesSite(); }));
    EXPECT_TRUE(came || rivalChangesSite());
    const bool asked = !administrator->takeQuestions().empty();
    EXPECT_TRUE(!asked || administrator->view() == viewBefore);
    expectNothingOpen();
    return letterOf(rival, {error, asked, site.rows(meetingQuestion(rival)).at(0)});
  });
}

/// He waits from the first row that the command has read until the end of its transaction.
TL_FOR_EACH(SqliteRivalTest, rivalRows({"BBBFFFF", "AABBBB", "AABBBB", "AAFAAFFFFF", "AABAABBBBB",
                                        "AABBBBBB", "BBBBBBBB", "BBBBBBBB"}));

class EachSqliteCommandTest : public SqliteCommandTest,
                              public ::testing::WithParamInterface<Command> {};

TEST_P(EachSqliteCommandTest, TheCallsAreThoseThatTheChartsCount) {
  begin(GetParam());
  const OdbcCalls calls;
  give();
  EXPECT_EQ(calls.verbs(), verbsOf(GetParam()));
}

/// A row that the database refuses, the command's own or the mark.
TEST_P(EachSqliteCommandTest, ARefusedRowLeavesTheSiteAsItWas) {
  const Command command = GetParam();
  const std::wstring done = undisturbed(command);
  const wchar_t* const events[] = {L"INSERT ON Interface_PACS_cfg", L"UPDATE ON Interface_PACS_cfg",
                                   L"DELETE ON Interface_PACS_cfg",
                                   L"INSERT ON System_workstation_cfg WHEN NEW.pc_name = 'PC-250'"};
  const std::wstring own = events[static_cast<std::size_t>(command)];
  for (const std::wstring& event : {own, std::wstring(L"INSERT ON System_offline_db_updates")}) {
    begin(command);
    site.run(L"CREATE TRIGGER refuse BEFORE " + event +
             L" BEGIN SELECT RAISE(ABORT, 'refused'); END");
    give();
    site.run(L"DROP TRIGGER refuse");
    EXPECT_EQ(letter(done), kUndone);
    expectSucceedsNow(done);
  }
  std::cout << "2 cells\n";
}

TEST_P(EachSqliteCommandTest, ARowThatCannotBeReadLeavesTheSiteAsItWas) {
  const std::wstring done = undisturbed(GetParam());
  begin(GetParam());
  const std::wstring table =
      GetParam() == Command::Assign ? L"System_workstation_cfg" : L"Interface_PACS_cfg";
  site.runAll({L"ALTER TABLE " + table + L" RENAME TO kept", L"CREATE VIEW " + table +
                                                                 L" AS SELECT * FROM kept WHERE " +
                                                                 L"abs(-9223372036854775807 - 1)"});
  give();
  site.runAll({L"DROP VIEW " + table, L"ALTER TABLE kept RENAME TO " + table});
  EXPECT_EQ(letter(done), kUndone);
  expectSucceedsNow(done);
  std::cout << "1 cell\n";
}

/// What a new mark needs is not there; other rows may still fit in.
TEST_P(EachSqliteCommandTest, AFullDiskLeavesTheSiteAsItWas) {
  const std::wstring done = undisturbed(GetParam());
  begin(GetParam());
  DatabaseFault full;
  full.begin(Fault::DiskFull, administrator->host->path.connection);
  give();
  full.end();
  EXPECT_EQ(letter(done), kUndone);
  expectSucceedsNow(done);
  std::cout << "1 cell\n";
}

TEST_F(SqliteCommandTest, AValueThatDoesNotConvertLeavesTheSiteAsItWas) {
  for (const Command command : {Command::SaveChanged, Command::Delete}) {
    const std::wstring done = undisturbed(command);
    begin(command);
    const std::wstring row = L" WHERE config_id = 5";
    site.run(L"UPDATE Interface_PACS_cfg SET flag18 = 'bad'" + row);
    give();
    site.run(L"UPDATE Interface_PACS_cfg SET flag18 = 0" + row);
    EXPECT_NE(error.find(L"13"), error.npos) << toUtf8(error);
    EXPECT_EQ(letter(done), kUndone);
    expectSucceedsNow(done);
  }
  std::cout << "2 cells\n";
}

TL_FOR_EACH(EachSqliteCommandTest, kCommands);

}  // namespace
}  // namespace tlpacscfg::test
