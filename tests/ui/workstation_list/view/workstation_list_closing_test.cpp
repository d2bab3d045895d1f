#include "data/direct_connections.h"
#include "ui/show_form/show_form.h"
#include "ui/win32/form.h"
#include "ui/window_fixture.h"

namespace tlpacscfg::test {
namespace {

class ListClosingTest : public WindowTest {
 protected:
  static void close(HWND window) { click(window, IDC_frmPACSList_btnOk); }

  /// Expects the last two messages and clears them.
  void expectCloseQuestionAfterTheError() {
    ASSERT_EQ(messages.size(), 2U);
    EXPECT_TRUE(messages[0].text.starts_with(L"Run-time error '40002':\r\n"));
    EXPECT_EQ(messages[1].text,
              L"The workstation assignments could not be saved. Close without saving them?");
    messages.clear();
  }

  /// Removes the quit message from the queue and returns its exit code; -1 for none.
  static int takeQuit() {
    MSG message{};
    const BOOL found = PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE);
    return found ? static_cast<int>(message.wParam) : -1;
  }

  static constexpr const wchar_t* kRefuseInserts =
      L"CREATE TRIGGER refuse BEFORE INSERT ON System_workstation_cfg BEGIN SELECT RAISE(ABORT, "
      L"'refused'); END";
};

TEST_F(ListClosingTest, ClosingWritesOneRowForEveryWorkstationAndTheMark) {
  addConfiguration(1);
  for (const wchar_t* name : {L"PC-101", L"PC-102", L"PC-103"}) addWorkstation(name);
  assign(L"PC-101", L"'1'");
  initialise();
  showWhile([&](HWND window) {
    EXPECT_TRUE(config_->ConfigLoaded);
    close(window);
  });
  EXPECT_FALSE(config_->ConfigLoaded);
  EXPECT_EQ(site.rows(L"select pc_name, key_value from System_workstation_cfg order by pc_name"),
            (ProbeRows{{L"PC-101", L"1"}, {L"PC-102", L"0"}, {L"PC-103", L"0"}}));
  EXPECT_EQ(site.value(L"select count(*) from System_offline_db_updates"), L"1");
}

TEST_F(ListClosingTest, ASaveThatFailsIsReportedAndTheWindowStays) {
  addWorkstation(L"O''BRIEN");
  addWorkstation(L"PC-1");
  assign(L"PC-1", L"'1'");
  initialise();
  showWhile([&](HWND window) {
    close(window);
    EXPECT_TRUE(isShown(kListTitle));
    expectPlainBox(
        L"Run-time error '40002':\r\nWorkstation 'O'BRIEN': Its name holds a single "
        L"quote. Nothing was saved.");
    messages.clear();
    answers = {system::Answer::Ok, system::Answer::No};
    SendMessageW(window, WM_CLOSE, 0, 0);
    EXPECT_TRUE(isShown(kListTitle));
    expectCloseQuestionAfterTheError();
    answers = {system::Answer::Ok, system::Answer::Yes};
    SendMessageW(window, WM_CLOSE, 0, 0);
  });
  EXPECT_FALSE(config_->ConfigLoaded);
  EXPECT_EQ(site.rows(L"select pc_name, key_value from System_workstation_cfg"),
            (ProbeRows{{L"PC-1", L"1"}}));
}

TEST_F(ListClosingTest, TheEndOfTheSessionSavesAndLeavesTheWindow) {
  addWorkstation(L"PC-1");
  initialise();
  showWhile([&](HWND window) {
    EXPECT_NE(SendMessageW(window, WM_QUERYENDSESSION, 0, 0), 0);
    EXPECT_TRUE(isShown(kListTitle));
    EXPECT_EQ(site.value(L"select count(*) from System_workstation_cfg"), L"1");
    close(window);
  });
}

TEST_F(ListClosingTest, TheEndOfTheSessionIsHeldUpWhileAssignmentsCannotBeSaved) {
  addWorkstation(L"PC-1");
  initialise();
  site.run(kRefuseInserts);
  showWhile([&](HWND window) {
    answers = {system::Answer::Ok, system::Answer::No};
    EXPECT_EQ(SendMessageW(window, WM_QUERYENDSESSION, 0, 0), 0);
    expectCloseQuestionAfterTheError();
    answers = {system::Answer::Ok, system::Answer::Yes};
    EXPECT_NE(SendMessageW(window, WM_QUERYENDSESSION, 0, 0), 0);
    site.run(L"DROP TRIGGER refuse");
    close(window);
  });
}

TEST_F(ListClosingTest, EscClosesAndSaves) {
  addWorkstation(L"PC-1");
  initialise();
  showWhile([&](HWND window) {
    pressKey(window, VK_ESCAPE);
    waitUntil([] { return !isShown(kListTitle); }, "Esc closes the window");
  });
  EXPECT_EQ(site.value(L"select count(*) from System_workstation_cfg"), L"1");
}

TEST_F(ListClosingTest, AHostThatEndsSavesFirst) {
  addWorkstation(L"PC-1");
  initialise();
  const DWORD thread = GetCurrentThreadId();
  showWhile([&](HWND) {
    PostThreadMessageW(thread, WM_QUIT, 3, 0);
    waitUntil([] { return !isShown(kListTitle); }, "the window is gone");
  });
  EXPECT_EQ(takeQuit(), 3);
  EXPECT_FALSE(win32::IsFormLoaded(L"frmPACSList"));
  EXPECT_EQ(site.value(L"select count(*) from System_workstation_cfg"), L"1");
}

TEST_F(ListClosingTest, AHostThatEndsWaitsForAssignmentsThatCannotBeSaved) {
  addWorkstation(L"PC-1");
  initialise();
  site.run(kRefuseInserts);
  const DWORD thread = GetCurrentThreadId();
  showWhile([&](HWND window) {
    answers = {system::Answer::Ok, system::Answer::No};
    PostThreadMessageW(thread, WM_QUIT, 3, 0);
    waitUntil([this] { return messages.size() == 2; }, "the question is answered");
    expectCloseQuestionAfterTheError();
    EXPECT_TRUE(isShown(kListTitle));
    site.run(L"DROP TRIGGER refuse");
    close(window);
  });
  EXPECT_EQ(takeQuit(), 3) << "The host ends when the list is closed.";
  EXPECT_EQ(site.value(L"select count(*) from System_workstation_cfg"), L"1");
}

TEST_F(ListClosingTest, ShowFormCalledFromTheQuestionOfAClosingListReturnsOne) {
  addWorkstation(L"PC-1");
  initialise();
  site.run(kRefuseInserts);
  int answered = -1;
  system::showMessage = [&](const system::Message& message) {
    if (message.buttons != system::Buttons::YesNo) return system::Answer::Ok;
    if (answered < 0) answered = ShowForm(config_);
    return system::Answer::Yes;
  };
  showWhile([&](HWND window) { SendMessageW(window, WM_CLOSE, 0, 0); });
  EXPECT_EQ(answered, 1);
}

}  // namespace
}  // namespace tlpacscfg::test
