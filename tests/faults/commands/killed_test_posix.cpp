#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <iostream>

#include "data/direct_connections.h"
#include "faults/commands/command_chart.h"
#include "faults/commands/sqlite_command_fixture.h"
#include "support/text.h"

/// The component's process is killed in the middle of a command. Only where a process can be
/// forked.
namespace tlpacscfg::test {
namespace {

class KilledTest : public SqliteCommandTest, public ::testing::WithParamInterface<Command> {
 protected:
  /// In a process of its own, which connects anew. False when it lived to the end.
  bool isKilledAt(int call, OdbcMoment moment) {
    administrator.reset();
    DisconnectDatabase();
    fill(GetParam());
    before = stored();
    const pid_t child = fork();
    if (child == 0) {
      administrator = std::make_unique<Administrator>(config);
      administrator->prepare(GetParam());
      giveWith(call, moment, [] { std::raise(SIGKILL); });
      _exit(0);
    }
    int status = 0;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    return WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL;
  }
};

TEST_P(KilledTest, TheSiteIsOldBeforeTheEndOfTheCommitAndNewAfterwards) {
  const std::wstring done = undisturbed(GetParam());
  const std::vector<int> calls = callsOf(GetParam());
  int cells = 0;
  // Nothing reaches the database between two calls: before one is the same as after the last.
  for (const int call : calls) {
    SCOPED_TRACE("call " + std::to_string(call));
    ASSERT_TRUE(isKilledAt(call, OdbcMoment::Before));
    expectNothingOpen();
    EXPECT_EQ(toUtf8(stored().rows), toUtf8(before.rows));
    EXPECT_EQ(stored().marks, 0);
    ++cells;
    administrator = std::make_unique<Administrator>(config);
    administrator->prepare(GetParam());
    give();
    EXPECT_EQ(toUtf8(error), "");
    EXPECT_EQ(toUtf8(stored().rows), toUtf8(done));
    EXPECT_EQ(stored().marks, 1);
  }
  ASSERT_TRUE(isKilledAt(calls.back(), OdbcMoment::After));
  expectNothingOpen();
  EXPECT_EQ(toUtf8(stored().rows), toUtf8(done));
  EXPECT_EQ(stored().marks, 1);
  ++cells;
  EXPECT_FALSE(isKilledAt(calls.back() + 1, OdbcMoment::Before));
  std::cout << cells << " cells\n";
}

TL_FOR_EACH(KilledTest, kCommands);

}  // namespace
}  // namespace tlpacscfg::test
