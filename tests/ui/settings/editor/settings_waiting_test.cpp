#include "data/direct_connections.h"
#include "data/mod_main.h"
#include "host/site_access.h"
#include "support/runtime_error.h"
#include "ui/settings/editor/settings_editor_test.h"

/// Actions of the host while a message box is open, and commands repeated after a failure.
namespace tlpacscfg::test {
namespace {

using enum Control;
using system::Answer;

class SettingsWaitingTest : public SettingsEditorTest {
 protected:
  void openWithOwnWay(std::int16_t configID) {
    makeSite();
    open(configID);
    host->path = OpenedPath::ofModules(*host->settings);
  }

  /// The host creates another object while a box is open; every question is answered with Yes.
  void createAnotherObjectInEachBox() {
    system::showMessage = [this](const system::Message& message) {
      messages.push_back(message);
      another_ = std::make_shared<clsConfig>();
      return Answer::Yes;
    };
  }

 private:
  std::shared_ptr<clsConfig> another_;
};

TEST_F(SettingsWaitingTest, AnObjectCreatedDuringAConflictQuestionDoesNotRedirectTheSave) {
  openWithOwnWay(5);
  site.run(L"update Interface_PACS_cfg set description = 'Theirs' where config_id = 5");
  type(txtDescription, L"Mine");
  createAnotherObjectInEachBox();
  editor.btnSave();
  EXPECT_EQ(description(5), L"Mine");
  EXPECT_FALSE(modMain.g_blnSqlConnected);
}

TEST_F(SettingsWaitingTest, AnObjectCreatedDuringAConfirmationDoesNotRedirectTheDelete) {
  openWithOwnWay(5);
  createAnotherObjectInEachBox();
  editor.btnDelete();
  EXPECT_EQ(count(), L"2");
  EXPECT_EQ(editor.rows.rowCount(), 2U);
}

TEST_F(SettingsWaitingTest, ANewConfigurationThatWasGivenUpIsBlankWhenTheWindowStaysOpen) {
  openWithOwnWay(5);
  editor.btnNew();
  applyPendingRules();
  type(txtDescription, L"Mine");
  answers = {Answer::No};
  EXPECT_TRUE(editor.mayLeave());
  EXPECT_TRUE(isBlank(editor.form));
  type(txtDescription, L"Later");
  editor.btnSave();
  EXPECT_EQ(description(10), L"Later");
  EXPECT_EQ(site.value(L"select count(*) from Interface_PACS_cfg where config_id = 0"), L"0");
}

TEST_F(SettingsWaitingTest, ARecordThatAHostAddedIsInsertedWithoutAQuestion) {
  openWithOwnWay(5);
  const auto added = std::make_shared<clsPACSConfiguration>();
  host->m_colPACSConfig->Item(2)->CopyValues(*added);
  added->configID = 20;
  added->ExistingConfig = kFalse;
  host->m_colPACSConfig->AddCurrenttoCollection(added);
  editor.unload();
  editor.load();
  editor.ShowPACSSettings(20);
  applyPendingRules();
  type(txtDescription, L"Mine");
  editor.btnSave();
  EXPECT_TRUE(messages.empty());
  EXPECT_EQ(description(20), L"Mine");
}

TEST_F(SettingsWaitingTest, AQuoteInTheNameOfTheLastUserAllowsUpdates) {
  makeSite();
  site.run(L"update Interface_PACS_cfg set last_user_id = 'O''Brien' where config_id = 5");
  open(5);
  type(txtDescription, L"Mine");
  editor.btnSave();
  EXPECT_EQ(description(5), L"Mine");
}

TEST_F(SettingsWaitingTest, AQuoteIsNoErrorWhereNothingIsSent) {
  host->m_colPACSConfig = std::make_shared<colPACSConfiguration>();
  host->m_colPACSConfig->AddIntitialConfig();
  modMain.g_blnUseOfflineDB = true;
  editor.load();
  editor.ShowPACSSettings(0);
  type(txtDescription, L"Memory");
  type(txtCloseDictation, L"a'b");
  editor.btnSave();
  EXPECT_EQ(hostDescription(1), L"Memory");
}

TEST_F(SettingsWaitingTest, AFailedDeleteKeepsTheEditsOfTheConfigurationOnTheScreen) {
  openWithOwnWay(5);
  type(txtDescription, L"Mine");
  site.run(
      L"CREATE TRIGGER refuse BEFORE DELETE ON Interface_PACS_cfg BEGIN SELECT RAISE(ABORT, "
      L"'refused'); END");
  answers = {Answer::Yes};
  editor.btnDelete();
  EXPECT_EQ(messages.size(), 2U);
  EXPECT_EQ(editor.currentID(), 5);
  EXPECT_EQ(editor.form[txtDescription].text, L"Mine");
}

}  // namespace
}  // namespace tlpacscfg::test
