#include "data/mod_main.h"
#include "data/tl_comm_client.h"
#include "odbc/connection.h"
#include "remote/client/client_fixture.h"
#include "ui/settings/view/settings_fixture.h"

namespace tlpacscfg::test {
namespace {

using enum Control;
using system::Answer;
using Texts = std::vector<std::wstring>;

constexpr const wchar_t* kUnreachable =
    L"Run-time error '40002':\r\nThere is no connection to the service.";

/// The windows on a site behind the remote data client, whose service stops and restarts.
class RemoteJourneyTest : public SettingsTest {
 protected:
  RemoteJourneyTest() {
    makeSite();
    addWorkstation(L"READ-02");
    client_.set(L"Token", WineService::kToken);
    client_.set(L"Transport", L"http");
    service_.start();
    useService(*config_->settings, service_.port());
    modMain.g_blnTlCommClientEnabled = true;
    initialise();
    EXPECT_TRUE(TlCommClientConnected());
  }

  /// Acts while the service is killed, expects one report after an optional question, and restarts
  /// the service.
  void whileUnreachable(const std::function<void()>& step, const wchar_t* report = kUnreachable) {
    const int port = service_.port();
    service_.end("KILL");
    messages.clear();
    step();
    if (messages.empty()) {
      ADD_FAILURE() << "Nothing was reported.";
    } else {
      EXPECT_EQ(messages.back().text, report);
      messages.clear();
    }
    service_.start(port);
  }

  static HWND workstations(HWND list) { return controlOf(list, IDC_frmPACSList_lvwPACSList); }

  std::wstring marks() {
    return site.value(L"select count(*) from System_offline_db_updates").value_or(L"");
  }

  RegisteredClient client_;
  WineService service_;
};

TEST_F(RemoteJourneyTest, WhatCannotBeSavedStaysOnTheScreenUntilItCan) {
  showWhile([&](HWND list) {
    const HWND window = openSettings(list);
    fill(window, txtDescription, L"Fifth");
    whileUnreachable([&] {
      press(window, btnSave);
      EXPECT_EQ(messages.size(), 1U);
      EXPECT_EQ(text(window, txtDescription), L"Fifth");
      EXPECT_EQ(list_view::cell(rows(window), 1, 1), L"5 - Five");
      EXPECT_EQ(list_view::cell(workstations(list), 0, 2), L"5 - Five");
      EXPECT_EQ(stored(5, L"description"), L"Five");
    });
    press(window, btnSave);
    EXPECT_TRUE(messages.empty());
    EXPECT_EQ(list_view::cell(rows(window), 1, 1), L"5 - Fifth");
    EXPECT_EQ(list_view::cell(workstations(list), 0, 2), L"5 - Fifth");
    EXPECT_EQ(stored(5, L"description"), L"Fifth");
    EXPECT_EQ(marks(), L"1");
    press(window, btnSave);
    EXPECT_EQ(marks(), L"1") << "Nothing was left to be saved.";

    pickRow(window, 2);
    answers = {Answer::Yes};
    whileUnreachable([&] {
      press(window, btnDelete);
      EXPECT_EQ(messages.size(), 1U) << "Whether it is used cannot be said.";
      EXPECT_EQ(list_view::column(rows(window), 0), (Texts{L"1", L"5", L"9"}));
      EXPECT_EQ(list_view::selectedRow(rows(window)), 2);
      EXPECT_EQ(text(window, txtDescription), L"Nine");
      EXPECT_EQ(count(), L"3");
    });
    answers = {Answer::Yes};
    press(window, btnDelete);
    EXPECT_EQ(list_view::column(rows(window), 0), (Texts{L"1", L"5"}));
    EXPECT_EQ(count(), L"2");
    EXPECT_EQ(marks(), L"2");
    messages.clear();

    closeSettings(window);
    EXPECT_TRUE(messages.empty());
    choose(list, IDC_frmPACSList_cboPCList, 2);
    list_view::selectRow(workstations(list), 1);
    click(list, IDC_frmPACSList_cmdEditWorkstation);
    const HWND dialog = windowNamed(L"Workstation Setting");
    choose(dialog, IDC_frmWorkstationSettings_cmbPACSConfig, 2);
    click(dialog, IDC_frmWorkstationSettings_cmdOK);
    EXPECT_EQ(list_view::cell(workstations(list), 1, 2), L"5 - Fifth");
    whileUnreachable([&] {
      click(list, IDC_frmPACSList_btnOk);
      EXPECT_EQ(messages.size(), 1U);
      EXPECT_TRUE(isShown(kListTitle));
      EXPECT_EQ(list_view::cell(workstations(list), 1, 2), L"5 - Fifth");
    });
    click(list, IDC_frmPACSList_btnOk);
  });
  EXPECT_TRUE(messages.empty());
  EXPECT_EQ(site.rows(L"select pc_name, key_value from System_workstation_cfg order by pc_name"),
            (ProbeRows{{kComputer, L"5"}, {L"READ-02", L"5"}}));
  EXPECT_EQ(marks(), L"3");
}

TEST_F(RemoteJourneyTest, ANewConfigurationIsStoredOnceAfterItCouldNotBe) {
  showWhile([&](HWND list) {
    const HWND window = openSettings(list);
    press(window, btnNew);
    fill(window, txtDescription, L"Ten");
    whileUnreachable([&] {
      press(window, btnSave);
      EXPECT_EQ(messages.size(), 1U);
      EXPECT_EQ(text(window, txtDescription), L"Ten");
      EXPECT_EQ(list_view::rowCount(rows(window)), 3);
      EXPECT_EQ(count(), L"3");
    });
    press(window, btnSave);
    EXPECT_TRUE(messages.empty());
    EXPECT_EQ(list_view::cell(rows(window), 3, 1), L"10 - Ten");
    press(window, btnSave);
    closeSettings(window);
    click(list, IDC_frmPACSList_btnOk);
  });
  EXPECT_EQ(site.rows(L"select config_id, description from Interface_PACS_cfg where config_id > 9"),
            (ProbeRows{{L"10", L"Ten"}}));
}

TEST_F(RemoteJourneyTest, ASaveWhoseServiceIsKilledMeanwhileIsUndone) {
  showWhile([&](HWND list) {
    const HWND window = openSettings(list);
    fill(window, txtDescription, L"Fifth");
    const int port = service_.port();
    {
      // Another program's transaction, for which the service has to wait.
      odbc::Connection other(std::make_shared<odbc::Environment>(odbc::CursorLibrary::NotUsed,
                                                                 std::chrono::seconds(10)),
                             L"TlTestSite", odbc::Prompt::Never, L"");
      other.query(L"BEGIN EXCLUSIVE");
      PostMessageW(control(window, btnSave), BM_CLICK, 0, 0);
      service_.end("KILL");
      waitUntil([&] { return !messages.empty(); }, "the failure is reported");
      EXPECT_TRUE(messages[0].text.starts_with(L"Run-time error '40002':\r\n"));
    }
    EXPECT_EQ(stored(5, L"description"), L"Five");
    EXPECT_EQ(text(window, txtDescription), L"Fifth");
    service_.start(port);
    press(window, btnSave);
    EXPECT_EQ(messages.size(), 1U);
    closeSettings(window);
    click(list, IDC_frmPACSList_btnOk);
  });
  EXPECT_EQ(stored(5, L"description"), L"Fifth");
}

TEST_F(RemoteJourneyTest, AListThatIsClosedWithoutItsAssignmentsAsksFirst) {
  showWhile([&](HWND list) {
    whileUnreachable([&] { click(list, IDC_frmPACSList_btnOk); });
    service_.end("KILL");
    answers = {Answer::Ok, Answer::Yes};
    SendMessageW(list, WM_CLOSE, 0, 0);
    EXPECT_FALSE(isShown(kListTitle));
    ASSERT_FALSE(messages.empty());
    EXPECT_EQ(messages.back().text,
              L"The workstation assignments could not be saved. Close without saving them?");
  });
  EXPECT_EQ(site.rows(L"select pc_name, key_value from System_workstation_cfg"),
            (ProbeRows{{kComputer, L"5"}}));
}

}  // namespace
}  // namespace tlpacscfg::test
