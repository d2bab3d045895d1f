#include <algorithm>
#include <iostream>

#include "data/database.h"
#include "data/mod_main.h"
#include "faults/commands/sqlite_command_test.h"
#include "harness/fake_client.h"
#include "support/text.h"

/// The windows' commands through a remote data client, with a fault at every call of its methods.
/// Each statement is a transaction of its own there.
namespace tlpacscfg::test {
namespace {

enum class Fault {
  Refused,     ///< The method answers that it failed, and CheckForError why.
  Throws,      ///< The call does nothing.
  AnswerLost,  ///< The call does what it is told, and fails.
  Vanished,    ///< This and every later call fails.
};

const char* nameOf(Fault fault) {
  switch (fault) {
    case Fault::Refused:
      return "refused";
    case Fault::Throws:
      return "throws";
    case Fault::AnswerLost:
      return "answer lost";
    case Fault::Vanished:
      return "vanished";
  }
  return "?";
}

constexpr char kUnmarked = 'M';  ///< No error; everything is stored, but for the mark.
constexpr char kStored = 'S';    ///< An error, though everything is stored; the edits are kept.
constexpr char kPart = 'P';      ///< An error; some batches are stored; the edits are kept.

/// One letter for the fault at each call: a question is four of them, a statement is one. What was
/// executed and cannot be read back counts as done, but for assignments, which are sent again; a
/// mark that fails is only logged.
struct FaultRow {
  Command command;
  Fault fault;
  std::string endings;
};

void PrintTo(const FaultRow& row, std::ostream* stream) {
  *stream << nameOf(row.command) << ", " << nameOf(row.fault);
}

const FaultRow kFaultRows[] = {
    {Command::SaveNew, Fault::Refused, "UUUUUUUUUDDDDM"},
    {Command::SaveNew, Fault::Throws, "UUUUUUUUUDDDDM"},
    {Command::SaveNew, Fault::AnswerLost, "UUUUUUUUSDDDDD"},
    {Command::SaveNew, Fault::Vanished, "UUUUUUUUUMMMMM"},
    {Command::SaveChanged, Fault::Refused, "UUUUUDDDDM"},
    {Command::SaveChanged, Fault::Throws, "UUUUUDDDDM"},
    {Command::SaveChanged, Fault::AnswerLost, "UUUUSDDDDD"},
    {Command::SaveChanged, Fault::Vanished, "UUUUUMMMMM"},
    {Command::Delete, Fault::Refused, "UUUUUUUUUUUUUDDDDM"},
    {Command::Delete, Fault::Throws, "UUUUUUUUUUUUUDDDDM"},
    {Command::Delete, Fault::AnswerLost, "UUUUUUUUUUUUSDDDDD"},
    {Command::Delete, Fault::Vanished, "UUUUUUUUUUUUUMMMMM"},
    {Command::Assign, Fault::Refused, "UUUUUPPSSSSM"},
    {Command::Assign, Fault::Throws, "UUUUUPPSSSSM"},
    {Command::Assign, Fault::AnswerLost, "UUUUPPSSSSSD"},
    {Command::Assign, Fault::Vanished, "UUUUUPPSSSSM"},
};

class RemoteFaultTest : public SqliteCommandTest, public ::testing::WithParamInterface<FaultRow> {
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
  bool giveWith(Fault fault, int call) {
    calls_ = 0;
    executed_.clear();
    executedBefore_ = 0;
    answered_ = 0;
    client_->listener = [this, fault, call](const std::wstring& method) {
      ++calls_;
      client_->tableCount = 1;
      client_->executes = true;
      losing_ = false;
      if (calls_ < call || (calls_ > call && fault != Fault::Vanished)) return;
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

  void inflict(Fault fault, const std::wstring& method) {
    if (fault == Fault::AnswerLost && method.starts_with(L"SQL")) {
      losing_ = true;
    } else if (fault != Fault::Refused) {
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

TEST_P(RemoteFaultTest, WhatWasConfirmedStaysAndTheSameCommandGoesWellAfterwards) {
  const auto& [command, fault, endings] = GetParam();
  const std::wstring done = undisturbed(command);
  std::string found;
  for (int call = 1;; ++call) {
    SCOPED_TRACE("call " + std::to_string(call));
    begin(command);
    if (!giveWith(fault, call)) break;
    found += remoteLetter(done);
    if (!error.empty()) {
      expectGoesWellNow(done);
      EXPECT_EQ(stored().marks, 1);
    }
  }
  EXPECT_EQ(found, endings);
  std::cout << found.size() << " cells\n";
}

INSTANTIATE_TEST_SUITE_P(Rows, RemoteFaultTest, ::testing::ValuesIn(kFaultRows),
                         [](const auto& row) {
                           return inOneWord(std::string(nameOf(row.param.command)) + ", " +
                                            nameOf(row.param.fault));
                         });

}  // namespace
}  // namespace tlpacscfg::test
