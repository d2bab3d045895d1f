#include "harness/fake_client.h"
#include "ui/settings/view/settings_test.h"

namespace tlpacscfg::test {
namespace {

using enum Control;
using system::Answer;

constexpr const wchar_t* kLockedBox = L"Run-time error '40002':\r\nThe table is locked.";

/// The settings window while a client stands between it and the database.
class SettingsRemoteWindowTest : public SettingsTest {
 protected:
  void editRemotely(const std::function<void(HWND)>& script) {
    makeSite();
    initialise();
    client = connectSiteClient();
    config_->path = OpenedPath::ofModules(*config_->settings);
    client->table = tableOf({{L"9"}});
    showWhile([&](HWND list) {
      const HWND window = openSettings(list);
      script(window);
      client->executes = true;
      answers.clear();
      if (isShown(kSettingsTitle)) closeSettings(window);
      click(list, IDC_frmPACSList_btnOk);
    });
  }

  void refuse() {
    client->executes = false;
    client->reason = L"The table is locked.";
  }

  std::shared_ptr<ClientScript> client;
};

TEST_F(SettingsRemoteWindowTest, ARefusedSaveShowsTheClientsWordsAndTheEditsStay) {
  editRemotely([this](HWND window) {
    fill(window, txtDescription, L"Fifth");
    refuse();
    press(window, btnSave);
    expectPlainBox(kLockedBox);
    EXPECT_EQ(text(window, txtDescription), L"Fifth");
    EXPECT_EQ(list_view::cell(rows(window), 1, 1), L"5 - Five");
    messages.clear();
    answers = {Answer::Cancel};
    press(window, btnExit);
    EXPECT_EQ(messages.size(), 1U);
    EXPECT_TRUE(isShown(kSettingsTitle));
    client->executes = true;
    press(window, btnSave);
    EXPECT_EQ(list_view::cell(rows(window), 1, 1), L"5 - Fifth");
  });
  EXPECT_EQ(messages.size(), 1U);
}

TEST_F(SettingsRemoteWindowTest, ARefusedDeleteShowsTheBoxOfADeleteAndTheConfigurationStays) {
  editRemotely([this](HWND window) {
    pickRow(window, 2);
    answers = {Answer::Yes};
    refuse();
    press(window, btnDelete);
    ASSERT_EQ(messages.size(), 2U);
    EXPECT_EQ(messages[1].text,
              L"Error Deleting configID = 9 from the DB. \r\nError = 40002 Error Description = The "
              L"table is locked.");
    EXPECT_EQ(list_view::rowCount(rows(window)), 3);
  });
  EXPECT_EQ(config_->m_colPACSConfig->GetItemNumber(9), 4);
}

}  // namespace
}  // namespace tlpacscfg::test
