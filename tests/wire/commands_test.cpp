#include <gmock/gmock.h>

#include <numeric>

#include "data/direct_connections.h"
#include "data/mod_main.h"
#include "faults/commands/command_chart.h"
#include "support/text.h"
#include "wire/wire_fixture.h"

/// The windows' commands on SQL Server, with a fault or a second administrator at every request.
namespace tlpacscfg::test {
namespace {

enum class WireFault {
  HangUpBefore,
  HangUpAfter,
  HangUpInside,  ///< After the answer to the first statement.
  Refused,
  RefusedAndUndone,  ///< The server also rolls back the transaction.
};

const char* nameOf(WireFault fault) {
  switch (fault) {
    case WireFault::HangUpBefore:
      return "hang-up before it";
    case WireFault::HangUpAfter:
      return "hang-up after it";
    case WireFault::HangUpInside:
      return "hang-up inside";
    case WireFault::Refused:
      return "refused";
    case WireFault::RefusedAndUndone:
      return "refused and undone";
  }
  return "?";
}

/// The number of requests of an undisturbed command. Each step begins with a test of the
/// connection. A transaction sets the isolation level, begins, runs the command's statements,
/// commits or rolls back, rolls back the empty transaction that the driver begins afterwards, and
/// restores the isolation level.
constexpr int requestsOf(Command command) {
  constexpr int kAnswers = 1, kBeginning = 2, kEnding = 3, kMark = 1;
  switch (command) {
    case Command::SaveNew:  // Numbering, check, INSERT, check.
      return kAnswers + 1 + kBeginning + 3 + kMark + kEnding;
    case Command::SaveChanged:  // Check, UPDATE, check.
      return kAnswers + kBeginning + 3 + kMark + kEnding;
    case Command::Delete:  // List; after the question list, two checks, DELETE.
      return kAnswers + kBeginning + 1 + kEnding + kAnswers + kBeginning + 1 + 3 + kMark + kEnding;
    case Command::Assign:  // List, three batches, list.
      return kAnswers + kBeginning + 5 + kMark + kEnding;
  }
  return 0;
}

/// The requests at which faults and changes are tried. Assignments, the slowest command, leave out
/// the begin and the rollback of the empty transaction, which are the same in all commands.
std::vector<int> requestsAt(Command command) {
  if (command == Command::Assign) return {1, 2, 4, 5, 6, 7, 8, 9, 10, 12};
  std::vector<int> requests(static_cast<std::size_t>(requestsOf(command)));
  std::iota(requests.begin(), requests.end(), 1);
  return requests;
}

/// A hang-up before a test of the connection has no effect, because the test reconnects; neither
/// has a fault after the commit or at the end of a deletion's first step, which writes nothing. If
/// the server refuses the isolation level, nothing is written: rows could change after they were
/// read.
const ChartRow<WireFault> kWireFaults[] = {
    {Command::SaveNew, WireFault::HangUpBefore, "DUUUUUUUUDD"},
    {Command::SaveNew, WireFault::HangUpAfter, "DUUUUUUUCDD"},
    {Command::SaveNew, WireFault::HangUpInside, "UUUUUUUUDDD"},
    {Command::SaveNew, WireFault::Refused, "DUUUUUUUUDD"},
    {Command::SaveNew, WireFault::RefusedAndUndone, "DUUUUUUUUDD"},
    {Command::SaveChanged, WireFault::HangUpBefore, "DUUUUUUUDD"},
    {Command::SaveChanged, WireFault::HangUpAfter, "DUUUUUUCDD"},
    {Command::SaveChanged, WireFault::HangUpInside, "UUUUUUUDDD"},
    {Command::SaveChanged, WireFault::Refused, "DUUUUUUUDD"},
    {Command::SaveChanged, WireFault::RefusedAndUndone, "DUUUUUUUDD"},
    {Command::Delete, WireFault::HangUpBefore, "DUUUDDDDUUUUUUUUDD"},
    {Command::Delete, WireFault::HangUpAfter, "DUUUDDDDUUUUUUUCDD"},
    {Command::Delete, WireFault::HangUpInside, "UUUDDDDUUUUUUUUDDD"},
    {Command::Delete, WireFault::Refused, "DUUUDDDDUUUUUUUUDD"},
    {Command::Delete, WireFault::RefusedAndUndone, "DUUUDDDDUUUUUUUUDD"},
    {Command::Assign, WireFault::HangUpBefore, "DUUUUUUUUD"},
    {Command::Assign, WireFault::HangUpAfter, "DUUUUUUUCD"},
    {Command::Assign, WireFault::HangUpInside, "UUUUUUUUDD"},
    {Command::Assign, WireFault::Refused, "DUUUUUUUUD"},
    {Command::Assign, WireFault::RefusedAndUndone, "DUUUUUUUUD"},
};

/// Whether the number is right: one for a time-out or lost connection, another for the rest.
bool isOfDatabase(const std::wstring& error) {
  const auto holds = [&](const wchar_t* text) { return error.find(text) != error.npos; };
  // A failed deletion shows its error in a message of its own.
  const bool isLost = holds(L"HYT00: ") || holds(L"08S01: ");
  const std::wstring number = isLost ? L"-2147467259" : L"40002";
  return error.starts_with(number + L": ") || holds((L"Error = " + number + L" ").c_str());
}

class WireCommandTest : public WireTest {
 protected:
  /// Creates a fresh site and an administrator ready to give the command.
  void begin(Command command) {
    administrator.reset();
    modMain.g_conSql.reset();
    modMain.g_envSql.reset();
    storeContent(command);
    administrator = std::make_unique<Administrator>(config);
    administrator->prepare(command);
    before = stored();
    viewBefore = administrator->view();
  }

  Stored stored() const {
    return storedIn([this](const std::wstring& sql) { return siteRows(sql); });
  }

  void give() { error = administrator->give(); }

  /// The rows after an undisturbed command.
  std::wstring undisturbed(Command command) {
    begin(command);
    give();
    EXPECT_EQ(toUtf8(error), "");
    EXPECT_TRUE(administrator->takeQuestions().empty());
    return stored().rows;
  }

  /// No transaction of the command locks the rows any more.
  void expectNothingOpen() {
    if (administrator->host->path.connection->isLost()) waitForSessions(0);
    EXPECT_NO_THROW(runAtSite(kHarmlessChange));
  }

  char letter(const std::wstring& done) {
    expectNothingOpen();
    EXPECT_TRUE(error.empty() || isOfDatabase(error)) << toUtf8(error);
    return letterOf({error, before, stored(), viewBefore, administrator->view()}, done);
  }

  /// The repeated command stores the intended rows, once, and asks nothing.
  void expectSucceedsNow(Command command, char letter, const std::wstring& done) {
    EXPECT_TRUE(administrator->takeQuestions().empty());
    give();
    EXPECT_EQ(toUtf8(error), "");
    EXPECT_TRUE(administrator->takeQuestions().empty());
    EXPECT_EQ(toUtf8(stored().rows), toUtf8(done));
    // Assignments stored without a confirmation are sent again, with their mark.
    const bool again = command == Command::Assign && letter == kUnconfirmed;
    EXPECT_EQ(stored().marks, again ? 2 : 1);
    EXPECT_NE(administrator->view(), viewBefore);
    expectNothingOpen();
  }

  std::unique_ptr<Administrator> administrator;
  Stored before;
  std::wstring viewBefore;
  std::wstring error;

 private:
  void storeContent(Command command) {
    storeSite();
    std::wstring script;
    for (const std::wstring& statement : contentFor(command)) script += statement + L";";
    runAtSite(script);
  }
};

class WireCommandFaultTest : public WireCommandTest,
                             public ::testing::WithParamInterface<ChartRow<WireFault>> {
 protected:
  void injectFault(WireFault fault, int request) const {
    const At at = At::request(request);
    switch (fault) {
      case WireFault::HangUpBefore:
        return hangUpBefore(at);
      case WireFault::HangUpAfter:
        return hangUpAfter(at);
      case WireFault::HangUpInside:
        return hangUpInside(at, Statements{1});
      case WireFault::Refused:
        return failAt(at, 9002, L"The transaction log is full.");
      case WireFault::RefusedAndUndone:
        return failAt(at, 1205, L"Transaction was deadlocked.", AfterFailure::UndoesTransaction);
    }
  }
};

TEST_P(WireCommandFaultTest, TheSiteIsOldOrNewAndTheSameCommandSucceedsAfterwards) {
  const auto command = GetParam().command;
  const auto fault = GetParam().fault;
  const std::wstring done = undisturbed(command);
  expectEndings(GetParam(), requestsAt(command), [&](int at) {
    begin(command);
    injectFault(fault, at);
    give();
    EXPECT_EQ(faultsLeft(), 0);
    const char ending = letter(done);
    if (ending != kDone) expectSucceedsNow(command, ending, done);
    return ending;
  });
}

TL_FOR_EACH(WireCommandFaultTest, kWireFaults);

class WireRivalTest : public WireCommandTest,
                      public ::testing::WithParamInterface<ChartRow<Rival>> {};

TEST_P(WireRivalTest, ARivalsChangeIsAskedAboutOrAppliedAfterwardsAndNeverLost) {
  const auto command = GetParam().command;
  const auto& rival = GetParam().fault;
  std::wstring script;
  for (const std::wstring& statement : statementsOf(rival)) script += statement + L";";
  expectEndings(GetParam(), requestsAt(command), [&](int at) {
    begin(command);
    changeSiteAt(At::request(at), script);
    give();
    EXPECT_EQ(faultsLeft(), 0);
    const bool asked = !administrator->takeQuestions().empty();
    EXPECT_TRUE(!asked || administrator->view() == viewBefore);
    expectNothingOpen();
    return letterOf(rival, {error, asked, siteRows(meetingQuestion(rival)).at(0)});
  });
}

/// A change before the command's check leads to a question or another number; a later one waits.
TL_FOR_EACH(WireRivalTest,
            rivalRows({"BBBBBFFFFFF", "AAAABBBBBB", "AAAABBBBBB", "AAAAAAAAAAAFFFFFFF",
                       "AAAAAAAAAAABBBBBBB", "AAABBBBBBB", "BBBBBBBBBB", "BBBBBBBBBB"}));

class EachWireCommandTest : public WireCommandTest, public ::testing::WithParamInterface<Command> {
 protected:
  const Command command = GetParam();
};

TEST_P(EachWireCommandTest, TheChartsCountEveryRequest) {
  begin(command);
  changeSiteAt(At::request(requestsOf(command)), kHarmlessChange);
  changeSiteAt(At::request(requestsOf(command) + 1), kHarmlessChange);
  give();
  EXPECT_EQ(toUtf8(error), "");
  EXPECT_EQ(faultsLeft(), 1);
}

/// The server refuses the commit and then one or both attempts to roll back.
TEST_P(EachWireCommandTest, ARollbackThatIsRefusedTooLeavesTheSiteAsItWas) {
  const std::wstring done = undisturbed(command);
  for (int refusedRollbacks = 1; refusedRollbacks <= 2; ++refusedRollbacks) {
    SCOPED_TRACE(refusedRollbacks);
    begin(command);
    const int commit = requestsOf(command) - 2;
    failAt(At::request(commit), 9002, L"The transaction log is full.");
    failAt(At::request(commit + 1), 9002, L"The transaction log is full.");
    // The driver begins a new transaction between the two rollbacks.
    if (refusedRollbacks == 2) failAt(At::request(commit + 3), 9002, L"It is full.");
    give();
    EXPECT_EQ(faultsLeft(), 0);
    EXPECT_EQ(administrator->host->path.connection->isLost(), refusedRollbacks == 2);
    const char ending = letter(done);
    EXPECT_EQ(ending, kUndone);
    expectSucceedsNow(command, ending, done);
  }
  std::cout << "2 cells\n";
}

TEST_P(EachWireCommandTest, ARestartOfTheServerBeforeTheCommandIsNotNoticed) {
  const std::wstring done = undisturbed(command);
  begin(command);
  restartServer();
  waitForSessions(0);
  give();
  EXPECT_EQ(letter(done), kDone);
  EXPECT_TRUE(administrator->takeQuestions().empty());
  std::cout << "1 cell\n";
}

TEST_P(EachWireCommandTest, AServerThatIsStoppedIsAnErrorUntilItIsStarted) {
  const std::wstring done = undisturbed(command);
  begin(command);
  stopServer();
  waitForSessions(0);
  for (int time = 1; time <= 2; ++time) {
    give();
    EXPECT_TRUE(error.starts_with(L"-2147467259: 08")) << toUtf8(error);
    EXPECT_TRUE(administrator->takeQuestions().empty());
    EXPECT_EQ(stored().rows, before.rows);
    EXPECT_EQ(toUtf8(administrator->view()), toUtf8(viewBefore));
  }
  startServer();
  expectSucceedsNow(command, kUndone, done);
  std::cout << "2 cells\n";
}

TL_FOR_EACH(EachWireCommandTest, kCommands);

enum class Executes { Yes, No };

/// Only a few: each takes its time limit, and as long again until the driver gives up.
struct Stall {
  Command command;
  int request;
  Executes executes;
  char ending;
};
void PrintTo(const Stall& stall, std::ostream* stream) {
  *stream << nameOf(stall.command) << ", request " << stall.request;
}

class WireStallTest : public WireCommandTest, public ::testing::WithParamInterface<Stall> {};

TEST_P(WireStallTest, AServerThatStopsAnsweringFailsTheCommandAtItsTimeLimit) {
  const auto& [command, request, executes, ending] = GetParam();
  const std::wstring done = undisturbed(command);
  begin(command);
  administrator->host->path.connection->limitStatements({.time = std::chrono::seconds(1)});
  if (executes == Executes::Yes) {
    stallAfter(At::request(request));
  } else {
    stallBefore(At::request(request));
  }
  give();
  EXPECT_EQ(faultsLeft(), 0);
  const char found = letter(done);
  EXPECT_EQ(found, ending);
  if (found != kDone) expectSucceedsNow(command, found, done);
  std::cout << "1 cell\n";
}

/// The test of the connection, an INSERT, a DELETE, and the second batch.
const Stall kStalls[] = {{Command::SaveChanged, 1, Executes::No, kDone},
                         {Command::SaveNew, 6, Executes::Yes, kUndone},
                         {Command::Delete, 13, Executes::No, kUndone},
                         {Command::Assign, 6, Executes::Yes, kUndone}};

INSTANTIATE_TEST_SUITE_P(Requests, WireStallTest, ::testing::ValuesIn(kStalls),
                         [](const auto& row) { return inOneWord(nameOf(row.param.command)); });

}  // namespace
}  // namespace tlpacscfg::test
