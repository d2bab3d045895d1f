#include "tools/fake_client.h"
#include "ui/win32/form.h"
#include "ui/window_test.h"

namespace tlpacscfg::test {
namespace {

class ListClosingTest : public WindowTest {
 protected:
  static void close(HWND window) { click(window, IDC_frmPACSList_btnOk); }
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
    EXPECT_EQ(messages.size(), 1U);
    EXPECT_TRUE(messages.back().text.starts_with(L"Run-time error '40002':\r\n"));
    answers = {doors::Answer::No};
    SendMessageW(window, WM_CLOSE, 0, 0);
    EXPECT_TRUE(isShown(kListTitle));
    EXPECT_EQ(messages.back().text,
              L"The workstation assignments could not be saved. Close without saving them?");
    answers = {doors::Answer::Yes};
    SendMessageW(window, WM_CLOSE, 0, 0);
  });
  EXPECT_FALSE(config_->ConfigLoaded);
  EXPECT_EQ(site.rows(L"select pc_name, key_value from System_workstation_cfg"),
            (ProbeRows{{L"PC-1", L"1"}}));
}

TEST_F(ListClosingTest, AssignmentsThatTheRemoteClientRefusesAreReportedAndTheWindowStays) {
  addWorkstation(L"PC-1");
  initialise();
  const auto client = connectFakeClient();
  client->refused = L"system_workstation_cfg";
  showWhile([&](HWND window) {
    client->errors = {L"The table is locked."};
    close(window);
    EXPECT_TRUE(isShown(kListTitle));
    expectPlainBox(L"Run-time error '40002':\r\nThe table is locked.");
    messages.clear();
    answers = {doors::Answer::No};
    SendMessageW(window, WM_CLOSE, 0, 0);
    EXPECT_TRUE(isShown(kListTitle));
    ASSERT_EQ(messages.size(), 1U);
    EXPECT_EQ(messages[0].text,
              L"The workstation assignments could not be saved. Close without saving them?");
    answers = {doors::Answer::Yes};
    SendMessageW(window, WM_CLOSE, 0, 0);
  });
  EXPECT_FALSE(config_->ConfigLoaded);
}

TEST_F(ListClosingTest, AssignmentsThatTheRemoteClientRefusedAreSentAgain) {
  addWorkstation(L"PC-1");
  initialise();
  const auto client = connectFakeClient();
  client->refused = L"PACSConfig";
  showWhile([&](HWND window) {
    close(window);
    EXPECT_EQ(messages.size(), 1U);
    EXPECT_TRUE(isShown(kListTitle));
    client->refused.clear();
    client->calls.clear();
    close(window);
  });
  ASSERT_EQ(client->calls.size(), 2U);
  EXPECT_NE(client->calls[0].find(L"VALUES('PC-1', 38, 'PACSConfig', '0', -1, 0)"),
            std::wstring::npos);
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

TEST_F(ListClosingTest, AHostThatEndsIsNotHeldByTheWindow) {
  initialise();
  const DWORD thread = GetCurrentThreadId();
  showWhile([&](HWND) {
    PostThreadMessageW(thread, WM_QUIT, 3, 0);
    waitUntil([] { return !isShown(kListTitle); }, "the window is gone");
  });
  MSG message{};
  EXPECT_TRUE(PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE));
  EXPECT_EQ(message.wParam, 3U);
  EXPECT_FALSE(win32::IsFormLoaded(L"frmPACSList"));
}

}  // namespace
}  // namespace tlpacscfg::test
