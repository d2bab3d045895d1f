#include <filesystem>
#include <iostream>

#include "data/database.h"
#include "data/mod_main.h"
#include "faults/commands/command_site.h"
#include "faults/commands/odbc_calls.h"
#include "faults/commands/sqlite_command_test.h"
#include "harness/scratch.h"
#include "support/text.h"

/// The windows' commands on SQLite, with a fault or a second administrator at every call of the
/// driver: each statement, and each end of a transaction.
namespace tlpacscfg::test {
namespace {

enum class Fault {
  Refused,
  Locked,         ///< Another connection keeps everybody out, from the call on.
  WritingLocked,  ///< Another connection is about to write.
  CommitLocked,   ///< Another connection reads, which holds up a commit and nothing before it.
  ReadOnly,
  FileGone,
};

const char* nameOf(Fault fault) {
  switch (fault) {
    case Fault::Refused:
      return "call refused";
    case Fault::Locked:
      return "locked";
    case Fault::WritingLocked:
      return "writing locked";
    case Fault::CommitLocked:
      return "commit locked";
    case Fault::ReadOnly:
      return "read-only";
    case Fault::FileGone:
      return "file gone";
  }
  return "?";
}

/// One letter for the fault from each call on. Nobody can lock what the command has read already,
/// and nobody's lock on writing matters once it has written. A refusal is an answer too where the
/// command only asks whether the connection still answers, a deletion twice.
struct FaultRow {
  Command command;
  Fault fault;
  std::string endings;
};

void PrintTo(const FaultRow& row, std::ostream* stream) {
  *stream << nameOf(row.command) << ", " << nameOf(row.fault);
}

const FaultRow kFaultRows[] = {
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

class SqliteFaultTest : public SqliteCommandTest, public ::testing::WithParamInterface<FaultRow> {
 protected:
  /// Before a call.
  void inflict(Fault fault) {
    switch (fault) {
      case Fault::Refused:
        return OdbcCalls::refuseThisCall();
      case Fault::Locked:
        return lock({L"BEGIN EXCLUSIVE"});
      case Fault::WritingLocked:
        return lock({L"BEGIN IMMEDIATE"});
      case Fault::CommitLocked:
        return lock({L"BEGIN", L"SELECT count(*) FROM Interface_PACS_cfg"});
      case Fault::ReadOnly:
        modMain.g_conSql->query(L"PRAGMA query_only = 1");
        return;
      case Fault::FileGone:
        std::filesystem::rename(siteFile(), gone());
        return;
    }
  }

  void relent(Fault fault) {
    if (locker_) {
      if (locked_) locker_->query(L"ROLLBACK");
      locker_.reset();
    }
    const auto& connection = administrator->host->path.connection;
    if (fault == Fault::ReadOnly && !connection->isLost()) {
      connection->query(L"PRAGMA query_only = 0");
    }
    if (std::filesystem::exists(gone())) std::filesystem::rename(gone(), siteFile());
  }

 private:
  static std::filesystem::path siteFile() { return scratchUnixPath("../site.db"); }
  static std::filesystem::path gone() { return scratchUnixPath("../site.db.gone"); }

  /// Does nothing where the command holds the rows already.
  void lock(const std::vector<std::wstring>& statements) {
    locker_ = anotherConnection();
    locked_ = false;
    try {
      for (const std::wstring& statement : statements) locker_->query(statement);
      locked_ = true;
    } catch (const RunTimeError&) {
    }
  }

  std::shared_ptr<odbc::Connection> locker_;
  bool locked_ = false;
};

TEST_P(SqliteFaultTest, TheSiteIsOldOrNewAndTheSameCommandGoesWellAfterwards) {
  const auto& [command, fault, endings] = GetParam();
  const std::wstring done = undisturbed(command);
  std::string found;
  for (const int call : callsOf(command)) {
    SCOPED_TRACE("call " + std::to_string(call));
    begin(command);
    const bool met = giveWith(call, OdbcMoment::Before, [&] { inflict(fault); });
    relent(fault);
    EXPECT_TRUE(met);
    found += letter(done);
    if (found.back() != kDone) expectGoesWellNow(done);
  }
  EXPECT_EQ(found, endings);
  std::cout << found.size() << " cells\n";
}

INSTANTIATE_TEST_SUITE_P(Rows, SqliteFaultTest, ::testing::ValuesIn(kFaultRows),
                         [](const auto& row) {
                           return inOneWord(std::string(nameOf(row.param.command)) + ", " +
                                            nameOf(row.param.fault));
                         });

/// One letter for each call at which the second administrator is at work.
struct RivalRow {
  const Rival& rival;
  std::string endings;
};
std::vector<RivalRow> rivalRows() {
  // He waits from the first row that the command has read until the end of its transaction.
  const char* const endings[] = {"BBBFFFF",    "AABBBB",   "AABBBB",   "AAFAAFFFFF",
                                 "AABAABBBBB", "AABBBBBB", "BBBBBBBB", "BBBBBBBB"};
  std::vector<RivalRow> rows;
  for (const Rival& rival : rivals()) rows.push_back({rival, endings[rows.size()]});
  return rows;
}

void PrintTo(const RivalRow& row, std::ostream* stream) {
  *stream << nameOf(row.rival.command) << ", " << row.rival.name;
}

class SqliteRivalTest : public SqliteCommandTest, public ::testing::WithParamInterface<RivalRow> {
 protected:
  /// False when the command holds the rows.
  bool rivalChangesSite() {
    const auto connection = anotherConnection();
    connection->query(L"BEGIN");
    try {
      for (const std::wstring& statement : statementsOf(GetParam().rival)) {
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

TEST_P(SqliteRivalTest, HisChangeIsAskedAboutOrComesAfterwardsAndIsNeverLost) {
  const auto& [rival, endings] = GetParam();
  std::string found;
  for (const int call : callsOf(rival.command)) {
    SCOPED_TRACE("call " + std::to_string(call));
    begin(rival.command);
    bool came = false;
    EXPECT_TRUE(giveWith(call, OdbcMoment::Before, [&] { came = rivalChangesSite(); }));
    EXPECT_TRUE(came || rivalChangesSite());
    const bool asked = !administrator->takeQuestions().empty();
    found += letterOf(rival, {error, asked, site.rows(meetingQuestion(rival)).at(0)});
    EXPECT_TRUE(!asked || administrator->view() == viewBefore);
    expectNothingOpen();
  }
  EXPECT_EQ(found, endings);
  std::cout << found.size() << " cells\n";
}

INSTANTIATE_TEST_SUITE_P(Rows, SqliteRivalTest, ::testing::ValuesIn(rivalRows()),
                         [](const auto& row) {
                           return inOneWord(std::string(nameOf(row.param.rival.command)) + ", " +
                                            row.param.rival.name);
                         });

class EachSqliteCommandTest : public SqliteCommandTest,
                              public ::testing::WithParamInterface<Command> {};

TEST_P(EachSqliteCommandTest, TheCallsAreThoseThatTheChartsCount) {
  begin(GetParam());
  const OdbcCalls calls([](int, OdbcMoment) {});
  give();
  EXPECT_EQ(calls.count(), callsOf(GetParam()).back());
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
    expectGoesWellNow(done);
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
  expectGoesWellNow(done);
  std::cout << "1 cell\n";
}

/// What a new mark needs is not there; other rows may still fit in.
TEST_P(EachSqliteCommandTest, AFullDiskLeavesTheSiteAsItWas) {
  const std::wstring done = undisturbed(GetParam());
  begin(GetParam());
  odbc::Connection& connection = *administrator->host->path.connection;
  const Table pages = connection.query(L"PRAGMA page_count");
  connection.query(L"PRAGMA max_page_count = " + std::wstring(*pages.at(0, 0)));
  for (std::size_t length = 2000; length > 0; length /= 2) {
    try {
      for (;;) {
        connection.query(L"INSERT INTO System_offline_db_updates VALUES(-9, 3, '', 0, '" +
                         std::wstring(length, L'x') + L"')");
      }
    } catch (const RunTimeError&) {
      // As much of this length as there is room for.
    }
  }
  give();
  connection.query(L"PRAGMA max_page_count = 1000000");
  EXPECT_EQ(letter(done), kUndone);
  expectGoesWellNow(done);
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
    expectGoesWellNow(done);
  }
  std::cout << "2 cells\n";
}

INSTANTIATE_TEST_SUITE_P(Commands, EachSqliteCommandTest, ::testing::ValuesIn(kCommands),
                         [](const auto& row) { return inOneWord(nameOf(row.param)); });

}  // namespace
}  // namespace tlpacscfg::test
