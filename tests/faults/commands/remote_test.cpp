#include <algorithm>
#include <numeric>

#include "data/direct_connections.h"
#include "data/mod_main.h"
#include "faults/commands/command_chart.h"
#include "faults/commands/sqlite_command_fixture.h"
#include "harness/fake_client.h"
#include "support/text.h"

/// The windows' commands through a remote data client, with a fault at every call of its methods.
/// Each statement is a transaction of its own there.
namespace tlpacscfg::test {
namespace {

enum class CallFault {
  Refused,     ///< The method answers that it failed, and CheckForError why.
  Throws,      ///< The call does nothing.
  AnswerLost,  ///< The call does what it is told, and fails.
  Vanished,    ///< This and every later call fails.
};

const char* nameOf(CallFault fault) {
  switch (fault) {
    case CallFault::Refused:
      return "refused";
    case CallFault::Throws:
      return "throws";
    case CallFault::AnswerLost:
      return "answer lost";
    case CallFault::Vanished:
      return "vanished";
  }
  return "?";
}

constexpr char kUnmarked = 'M';  ///< No error; everything is stored, but for the mark.
constexpr char kStored = 'S';    ///< An error, though everything is stored; the edits are kept.
constexpr char kPart = 'P';      ///< An error; some batches are stored; the edits are kept.

/// A call that throws ends as one that is refused. A query is four calls, a statement is one. What
/// was executed and cannot be read back counts as done, but for assignments, which are sent again;
/// a mark that fails is only logged.
const ChartRow<CallFault> kRemoteFaults[] = {
    {Command::SaveNew, CallFault::Refused, "UUUUUUUUUDDDDM"},
    {Command::SaveNew, CallFault::Throws, "UUUUUUUUUDDDDM"},
    {Command::SaveNew, CallFault::AnswerLost, "UUUUUUUUSDDDDD"},
    {Command::SaveNew, CallFault::Vanished, "UUUUUUUUUMMMMM"},
    {Command::SaveChanged, CallFault::Refused, "UUUUUDDDDM"},
    {Command::SaveChanged, CallFault::AnswerLost, "UUUUSDDDDD"},
    {Command::Delete, CallFault::Refused, "UUUUUUUUUUUUUDDDDM"},
    {Command::Delete, CallFault::AnswerLost, "UUUUUUUUUUUUSDDDDD"},
    {Command::Delete, CallFault::Vanished, "UUUUUUUUUUUUUMMMMM"},
    {Command::Assign, CallFault::Refused, "UUUUUPPSSSSM"},
    {Command::Assign, CallFault::AnswerLost, "UUUUPPSSSSSD"},
    {Command::Assign, CallFault::Vanished, "UUUUUPPSSSSM"},
};

class RemoteFaultTest : public SqliteCommandTest,
                        public ::testing::WithParamInterface<ChartRow<CallFault>> {
 protected:
  RemoteFaultTest() {
    config.TlCommClientHostIP = L"10.0.0.1";
    config.TlCommClientHostPort = L"7000";
    config.TlCommClientTimeout = L"5";
    config.SqlDbName = L"site";
    modMain.g_blnTlCommClientEnabled = true;
    const auto connection = anotherConnection();
    client_->answer = [this, connection](const std::wstring& sql) {
      Table table = connection->query(sql);
      loseAnswer();
      return table;
    };
    client_->execute = [this, connection](const std::wstring& sql) {
      connection->execute(sql);
      executed_.push_back(sql);
      loseAnswer();
      ++answered_;
    };
  }

  /// Gives the command with the fault at a call. False when there is no such call.
  bool giveWith(CallFault fault, int call) {
    calls_ = 0;
    executed_.clear();
    executedBefore_ = 0;
    answered_ = 0;
    client_->listener = [this, fault, call](const std::wstring& method) {
      ++calls_;
      client_->tableCount = 1;
      client_->executes = true;
      losing_ = false;
      if (calls_ < call || (calls_ > call && fault != CallFault::Vanished)) return;
      if (calls_ == call) executedBefore_ = executed_.size();
      inflict(fault, method);
    };
    give();
    client_->listener = nullptr;
    client_->tableCount = 1;
    client_->executes = true;
    client_->errors.clear();
    return calls_ >= call;
  }

  char remoteLetter(const std::wstring& done) const {
    expectNothingOpen();
    const Stored now = stored();
    const int marks = now.marks - before.marks;
    if (now.rows == done && error.empty()) return marks == 1 ? kDone : marks == 0 ? kUnmarked : '!';
    EXPECT_FALSE(error.empty());
    EXPECT_EQ(toUtf8(administrator->view()), toUtf8(viewWithAnswers()))
        << "The edits are lost, or taken for somebody else's.";
    EXPECT_EQ(marks, 0);
    // The failing call may have executed its own statement, but none came after it.
    EXPECT_LE(executed_.size(), executedBefore_ + 1);
    if (now.rows == done) return kStored;
    if (now.rows == before.rows) return kUndone;
    EXPECT_EQ(GetParam().command, Command::Assign) << "Neither old nor new.";
    const std::wstring assigned =
        *site.value(L"SELECT count(*) FROM System_workstation_cfg WHERE key_value = '5'");
    EXPECT_EQ(assigned, decimal(executed_.size() * 50)) << "Whole batches.";
    return kPart;
  }

 private:
  /// What he entered is kept, and assignments whose batch was answered count as stored. Their ids
  /// have one digit: "PC-002=5(1)".
  std::wstring viewWithAnswers() const {
    std::wstring view = viewBefore;
    if (GetParam().command != Command::Assign) return view;
    const std::size_t confirmed = std::min<std::size_t>(answered_ * 100, kWorkstations);
    std::size_t held = 0;
    for (std::size_t i = 0; i < confirmed; ++i) {
      held = view.find(L'(', held) + 1;
      view[held] = view[held - 2];
    }
    return view;
  }

  void inflict(CallFault fault, const std::wstring& method) {
    if (fault == CallFault::AnswerLost && method.starts_with(L"SQL")) {
      losing_ = true;
    } else if (fault != CallFault::Refused) {
      throw RunTimeError(-2147417848, L"The object invoked has disconnected from its clients.");
    } else {
      client_->errors.push_back(L"Refused.");
      client_->tableCount = 0;
      client_->executes = false;
    }
  }

  void loseAnswer() {
    if (!std::exchange(losing_, false)) return;
    throw RunTimeError(-2147417848, L"The object invoked has disconnected from its clients.");
  }

  std::shared_ptr<ClientScript> client_ = installFakeClient();
  int calls_ = 0;
  bool losing_ = false;
  std::vector<std::wstring> executed_;
  std::size_t executedBefore_ = 0;
  std::size_t answered_ = 0;
};

TEST_P(RemoteFaultTest, WhatWasConfirmedStaysAndTheSameCommandSucceedsAfterwards) {
  const auto command = GetParam().command;
  const auto fault = GetParam().fault;
  const std::wstring done = undisturbed(command);
  std::vector<int> steps(GetParam().endings.size());
  std::iota(steps.begin(), steps.end(), 1);
  expectEndings(GetParam(), steps, [&](int call) {
    begin(command);
    EXPECT_TRUE(giveWith(fault, call));
    const char ending = remoteLetter(done);
    if (!error.empty()) {
      expectSucceedsNow(done);
      EXPECT_EQ(stored().marks, 1);
    }
    return ending;
  });
  begin(command);
  EXPECT_FALSE(giveWith(fault, static_cast<int>(steps.size()) + 1)) << "There are more calls.";
}

TL_FOR_EACH(RemoteFaultTest, kRemoteFaults);

}  // namespace
}  // namespace tlpacscfg::test
