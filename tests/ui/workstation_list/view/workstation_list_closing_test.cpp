#include "data/database.h"
#include "data/mod_main.h"
#include "harness/fake_client.h"
#include "ui/show_form.h"
#include "ui/win32/form.h"
#include "ui/window_test.h"

namespace tlpacscfg::test {
namespace {

class ListClosingTest : public WindowTest {
 protected:
  static void close(HWND window) { click(window, IDC_frmPACSList_btnOk); }

  /// The site behind a remote client from now on.
  std::shared_ptr<ClientScript> goRemote() {
    auto client = connectSiteClient();
    config_->path = OpenedPath::ofModules(*config_->settings);
    return client;
  }

  /// The last two messages; they are forgotten.
  void expectCloseQuestionAfterTheError() {
    ASSERT_EQ(messages.size(), 2U);
    EXPECT_TRUE(messages[0].text.starts_with(L"Run-time error '40002':\r\n"));
    EXPECT_EQ(messages[1].text,
              L"The workstation assignments could not be saved. Close without saving them?");
    EXPECT_EQ(messages[1].buttons, system::Buttons::YesNo);
    EXPECT_EQ(messages[1].defaultAnswer, system::Answer::No);
    EXPECT_EQ(messages[1].icon, system::Icon::None);
    EXPECT_EQ(messages[1].modality, system::Modality::System);
    messages.clear();
  }

  /// The exit code of the host's end, which waits in the queue; -1 for none.
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

TEST_F(ListClosingTest, TheCloseBoxSavesAsTheButtonDoes) {
  addWorkstation(L"PC-1");
  initialise();
  showWhile([&](HWND window) { SendMessageW(window, WM_CLOSE, 0, 0); });
  EXPECT_EQ(site.value(L"select count(*) from System_workstation_cfg"), L"1");
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

TEST_F(ListClosingTest, TheCloseBoxTriesToSaveEachTimeAndAsksOnlyWhenThatFailed) {
  addWorkstation(L"PC-1");
  initialise();
  site.run(kRefuseInserts);
  showWhile([&](HWND window) {
    close(window);
    EXPECT_EQ(messages.size(), 1U);
    site.run(L"DROP TRIGGER refuse");
    SendMessageW(window, WM_CLOSE, 0, 0);
  });
  EXPECT_EQ(messages.size(), 1U) << "Nobody is asked when the second try went well.";
  EXPECT_EQ(site.value(L"select count(*) from System_workstation_cfg"), L"1");
}

TEST_F(ListClosingTest, AssignmentsThatTheRemoteClientRefusesAreReportedAndTheWindowStays) {
  addWorkstation(L"PC-1");
  initialise();
  const auto client = goRemote();
  client->refused = L"system_workstation_cfg";
  client->reason = L"The table is locked.";
  showWhile([&](HWND window) {
    close(window);
    EXPECT_TRUE(isShown(kListTitle));
    expectPlainBox(L"Run-time error '40002':\r\nThe table is locked.");
    messages.clear();
    answers = {system::Answer::Ok, system::Answer::No};
    SendMessageW(window, WM_CLOSE, 0, 0);
    EXPECT_TRUE(isShown(kListTitle));
    expectCloseQuestionAfterTheError();
    answers = {system::Answer::Ok, system::Answer::Yes};
    SendMessageW(window, WM_CLOSE, 0, 0);
  });
  EXPECT_FALSE(config_->ConfigLoaded);
}

TEST_F(ListClosingTest, AssignmentsThatTheRemoteClientRefusedAreSentAgain) {
  addWorkstation(L"PC-1");
  initialise();
  const auto client = goRemote();
  client->refused = L"PACSConfig', '";
  showWhile([&](HWND window) {
    close(window);
    EXPECT_EQ(messages.size(), 1U);
    EXPECT_TRUE(isShown(kListTitle));
    client->refused.clear();
    close(window);
  });
  EXPECT_EQ(site.rows(L"select pc_name, key_value from System_workstation_cfg"),
            (ProbeRows{{L"PC-1", L"0"}}));
}

TEST_F(ListClosingTest, AnUntouchedListLeavesTheAssignmentsOfAColleagueAlone) {
  addConfiguration(1);
  for (const wchar_t* name : {L"PC-1", L"PC-2"}) {
    addWorkstation(name);
    assign(name, L"'1'");
  }
  initialise();
  showWhile([&](HWND window) {
    site.run(L"update System_workstation_cfg set key_value = '7' where pc_name = 'PC-1'");
    close(window);
  });
  EXPECT_TRUE(messages.empty());
  EXPECT_EQ(site.rows(L"select pc_name, key_value from System_workstation_cfg order by pc_name"),
            (ProbeRows{{L"PC-1", L"7"}, {L"PC-2", L"1"}}));
}

class ListConflictTest : public ListClosingTest {
 protected:
  /// PC-1 is reassigned to 2 here and to 3 elsewhere.
  void closeInConflict(system::Answer answer, const std::function<void(HWND)>& afterwards = {}) {
    addConfiguration(1, L"description = 'One'");
    addConfiguration(2, L"description = 'Two'");
    addWorkstation(L"PC-1");
    assign(L"PC-1", L"'1'");
    initialise();
    config_->m_colWorkstation->Item(1)->configID = 2;
    site.run(L"update System_workstation_cfg set key_value = '3'");
    showWhile([&](HWND window) {
      answers = {answer};
      close(window);
      if (afterwards) afterwards(window);
    });
    ASSERT_FALSE(messages.empty());
    EXPECT_EQ(messages[0].text,
              L"Somebody else reassigned workstations that were reassigned here too:\r\nPC-1: here "
              L"2 - Two, stored 3\r\nSave the assignments made here? No keeps the stored ones.");
    EXPECT_EQ(messages[0].buttons, system::Buttons::YesNoCancel);
    EXPECT_EQ(messages[0].defaultAnswer, system::Answer::Cancel);
    EXPECT_EQ(messages[0].icon, system::Icon::None);
    EXPECT_EQ(messages[0].modality, system::Modality::System);
  }
  std::wstring stored() { return *site.value(L"select key_value from System_workstation_cfg"); }
};

TEST_F(ListConflictTest, YesSavesTheAssignmentsMadeHere) {
  closeInConflict(system::Answer::Yes);
  EXPECT_EQ(stored(), L"2");
}

TEST_F(ListConflictTest, NoKeepsTheStoredOnes) {
  closeInConflict(system::Answer::No);
  EXPECT_EQ(stored(), L"3");
}

TEST_F(ListConflictTest, CancelStaysAndWritesNothing) {
  closeInConflict(system::Answer::Cancel, [this](HWND window) {
    EXPECT_TRUE(isShown(kListTitle));
    EXPECT_EQ(stored(), L"3");
    EXPECT_EQ(site.value(L"select count(*) from System_offline_db_updates"), L"0");
    answers = {system::Answer::No};
    close(window);
  });
  EXPECT_EQ(messages.size(), 2U);
}

TEST_F(ListClosingTest, ManyConflictsAreCountedBehindTheFirstFew) {
  for (int i = 1; i <= 8; ++i) addWorkstation(L"PC-" + std::to_wstring(i));
  initialise();
  for (const auto& workstation : config_->m_colWorkstation->ColWorkStations->items()) {
    workstation->configID = 2;
    assign(workstation->WorkStation, L"'3'");
  }
  showWhile([&](HWND window) {
    answers = {system::Answer::Yes};
    close(window);
  });
  ASSERT_EQ(messages.size(), 1U);
  EXPECT_NE(messages[0].text.find(L"PC-5: here 2, stored 3\r\nand 3 more\r\n"), std::wstring::npos);
}

TEST_F(ListClosingTest, ASecondObjectOfTheHostTakesNothingFromTheList) {
  addWorkstation(L"PC-1");
  initialise();
  showWhile([&](HWND window) {
    const auto another = std::make_shared<clsConfig>();
    EXPECT_FALSE(modMain.g_blnSqlConnected);
    close(window);
  });
  EXPECT_TRUE(messages.empty());
  EXPECT_EQ(site.value(L"select count(*) from System_workstation_cfg"), L"1");
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

TEST_F(ListClosingTest, ShowFormCalledFromTheQuestionOfAClosingListShowsNothingAndSaysSo) {
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
