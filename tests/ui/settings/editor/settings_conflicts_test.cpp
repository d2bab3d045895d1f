#include "support/runtime_error.h"
#include "harness/errors.h"
#include "harness/fake_client.h"
#include "ui/settings/editor/settings_editor_test.h"

/// Two administrators who change the same configurations, directly and through a remote client.
namespace tlpacscfg::test {
namespace {

using enum Control;
using system::Answer;
using system::Buttons;

class SettingsConflictTest : public SettingsEditorTest, public ::testing::WithParamInterface<Path> {
 protected:
  void openSite(std::int16_t configID) {
    makeSite();
    open(configID);
    if (GetParam() == Path::Remote) connectSiteClient();
  }

  /// Somebody else changes the configuration.
  void changeElsewhere(int id, const std::wstring& change) {
    site.run(
        L"update Interface_PACS_cfg set last_user_id = 12, last_change_date = '2026-01-04 "
        L"17:30:00', " +
        change + L" where config_id = " + decimal(id));
  }
  void deleteElsewhere(int id) {
    site.run(L"delete from Interface_PACS_cfg where config_id = " + decimal(id));
  }

  std::wstring marks() {
    return *site.value(L"select count(*) from System_offline_db_updates where user_id = -1");
  }

  void expectQuestion(std::size_t index, const std::wstring& text, Buttons buttons,
                      Answer safeAnswer) const {
    ASSERT_GT(messages.size(), index);
    EXPECT_EQ(messages[index].text, text);
    EXPECT_EQ(messages[index].buttons, buttons);
    EXPECT_EQ(messages[index].defaultAnswer, safeAnswer);
    EXPECT_EQ(messages[index].icon, system::Icon::None);
    EXPECT_EQ(messages[index].modality, system::Modality::System);
    EXPECT_EQ(messages[index].title, L"TLPACSCFG");
  }
};

constexpr const wchar_t* kChanged =
    L"Configuration 5 was changed by user 12 on 2026-01-04 17:30:00 since it was loaded. Save your "
    L"values over it? No shows the stored values instead.";
constexpr const wchar_t* kDeleted =
    L"Configuration 5 was deleted by somebody else since it was loaded. Save it again? No removes "
    L"it from the list.";

TEST_P(SettingsConflictTest, NobodyIsAskedWhenNobodyInterfered) {
  openSite(5);
  type(txtDescription, L"Mine");
  editor.btnSave();
  type(txtDescription, L"Mine again");
  editor.btnSave();
  EXPECT_TRUE(messages.empty());
  EXPECT_EQ(description(5), L"Mine again");
  EXPECT_EQ(marks(), L"2");
}

TEST_P(SettingsConflictTest, AChangeByAnotherIsAskedAboutAndCancelGoesOnEditing) {
  openSite(5);
  changeElsewhere(5, L"description = 'Theirs'");
  type(txtDescription, L"Mine");
  answers = {Answer::Cancel};
  editor.btnSave();
  expectQuestion(0, kChanged, Buttons::YesNoCancel, Answer::Cancel);
  EXPECT_EQ(description(5), L"Theirs");
  EXPECT_EQ(editor.form[txtDescription].text, L"Mine");
  EXPECT_EQ(marks(), L"0");
  EXPECT_EQ(listRefreshes, 0);
  answers = {Answer::Cancel};
  editor.btnSave();
  EXPECT_EQ(messages.size(), 2U) << "The question comes again.";
}

TEST_P(SettingsConflictTest, YesSavesOverTheChangeOfAnother) {
  openSite(5);
  changeElsewhere(5, L"description = 'Theirs'");
  type(txtDescription, L"Mine");
  answers = {Answer::Yes};
  editor.btnSave();
  EXPECT_EQ(description(5), L"Mine");
  EXPECT_EQ(hostDescription(5), L"Mine");
  EXPECT_EQ(marks(), L"1");
  type(txtDescription, L"Mine again");
  editor.btnSave();
  EXPECT_EQ(messages.size(), 1U) << "The question is settled.";
}

TEST_P(SettingsConflictTest, NoShowsTheStoredValues) {
  openSite(5);
  changeElsewhere(5, L"description = 'Theirs', flag6 = 104");
  type(txtDescription, L"Mine");
  answers = {Answer::No};
  editor.btnSave();
  EXPECT_EQ(description(5), L"Theirs");
  EXPECT_EQ(editor.form[txtDescription].text, L"Theirs");
  EXPECT_EQ(editor.form[txtPort].text, L"104");
  EXPECT_EQ(hostDescription(5), L"Theirs");
  EXPECT_EQ(editor.rows.cell(1, ConfigurationRows::kConfiguration), L"5 - Theirs");
  EXPECT_EQ(marks(), L"0");
  EXPECT_TRUE(editor.btnExit());
  EXPECT_EQ(messages.size(), 1U);
}

TEST_P(SettingsConflictTest, AChangeToAnyOneFieldCounts) {
  openSite(5);
  changeElsewhere(5, L"flag18 = 1");
  type(txtDescription, L"Mine");
  answers = {Answer::Cancel};
  editor.btnSave();
  ASSERT_EQ(messages.size(), 1U);
}

TEST_P(SettingsConflictTest, ASaveByAnotherThatChangedNoValueIsNoConflict) {
  openSite(5);
  changeElsewhere(5, L"description = 'Five  '");
  type(txtDescription, L"Mine");
  editor.btnSave();
  EXPECT_TRUE(messages.empty());
  EXPECT_EQ(description(5), L"Mine");
}

TEST_P(SettingsConflictTest, AnIdenticalSaveByAnotherIsNoConflict) {
  openSite(5);
  changeElsewhere(5, L"description = 'The same'");
  type(txtDescription, L"The same");
  editor.btnSave();
  EXPECT_TRUE(messages.empty());
  EXPECT_EQ(description(5), L"The same");
}

TEST_P(SettingsConflictTest, ADeletedConfigurationIsSavedAgainOnlyWhenTheAnswerIsYes) {
  openSite(5);
  deleteElsewhere(5);
  type(txtDescription, L"Mine");
  answers = {Answer::Cancel};
  editor.btnSave();
  expectQuestion(0, kDeleted, Buttons::YesNoCancel, Answer::Cancel);
  EXPECT_EQ(count(), L"2");
  EXPECT_EQ(editor.form[txtDescription].text, L"Mine");
  answers = {Answer::Yes};
  editor.btnSave();
  EXPECT_EQ(description(5), L"Mine");
  EXPECT_EQ(site.value(L"select last_user_id from Interface_PACS_cfg where config_id = 5"), L"42");
  EXPECT_EQ(count(), L"3");
  type(txtDescription, L"Mine again");
  editor.btnSave();
  EXPECT_EQ(description(5), L"Mine again");
  EXPECT_EQ(messages.size(), 2U);
}

TEST_P(SettingsConflictTest, NoRemovesADeletedConfigurationFromTheList) {
  openSite(5);
  deleteElsewhere(5);
  type(txtDescription, L"Mine");
  answers = {Answer::No};
  editor.btnSave();
  EXPECT_EQ(count(), L"2");
  EXPECT_EQ(editor.rows.rowCount(), 2U);
  EXPECT_EQ(editor.currentID(), 1);
  EXPECT_EQ(editor.form[txtDescription].text, L"Default");
  EXPECT_EQ(hostDescription(5), L"<none>");
}

TEST_P(SettingsConflictTest, LeavingWithYesStaysWhenTheConflictIsCancelled) {
  openSite(5);
  changeElsewhere(5, L"description = 'Theirs'");
  type(txtDescription, L"Mine");
  answers = {Answer::Yes, Answer::Cancel};
  editor.rowClicked(2);
  EXPECT_EQ(messages.size(), 2U);
  EXPECT_EQ(editor.currentID(), 5);
  EXPECT_EQ(editor.selectedRow, 1U);
  EXPECT_EQ(editor.form[txtDescription].text, L"Mine");
  EXPECT_EQ(description(5), L"Theirs");
}

TEST_P(SettingsConflictTest, DeletingAConfigurationThatAnotherChangedIsAskedAbout) {
  openSite(5);
  changeElsewhere(5, L"description = 'Theirs'");
  answers = {Answer::Yes, Answer::No};
  editor.btnDelete();
  expectQuestion(1,
                 L"Configuration 5 was changed by user 12 on 2026-01-04 17:30:00 since it was "
                 L"loaded. Delete it all the same?",
                 Buttons::YesNo, Answer::No);
  EXPECT_EQ(count(), L"3");
  EXPECT_EQ(editor.currentID(), 5);
  EXPECT_EQ(editor.rows.rowCount(), 3U);
  answers = {Answer::Yes, Answer::Yes};
  editor.btnDelete();
  EXPECT_EQ(count(), L"2");
  EXPECT_EQ(editor.rows.rowCount(), 2U);
}

TEST_P(SettingsConflictTest, DeletingAConfigurationThatAnotherDeletedOnlyUpdatesTheList) {
  openSite(5);
  deleteElsewhere(5);
  answers = {Answer::Yes, Answer::Yes};
  editor.btnDelete();
  expectQuestion(
      1,
      L"Configuration 5 was deleted by somebody else since it was loaded. Remove it from "
      L"the list?",
      Buttons::YesNo, Answer::No);
  EXPECT_EQ(editor.rows.rowCount(), 2U);
  EXPECT_EQ(hostDescription(5), L"<none>");
  EXPECT_EQ(marks(), L"0");
}

TEST_P(SettingsConflictTest, AConfigurationThatAnotherHasAssignedIsNotDeleted) {
  openSite(5);
  addWorkstation(L"NEW-01");
  assign(L"NEW-01", L"'5'");
  editor.btnDelete();
  ASSERT_EQ(messages.size(), 1U);
  EXPECT_TRUE(messages[0].text.starts_with(L"This configuration is currently being used"));
  EXPECT_EQ(count(), L"3");
}

TEST_P(SettingsConflictTest, AConfigurationAssignedWhileTheQuestionWaitsIsNotDeleted) {
  openSite(5);
  system::showMessage = [this](const system::Message& message) {
    messages.push_back(message);
    if (message.text != kDeleteQuestion) return Answer::Ok;
    addWorkstation(L"NEW-01");
    assign(L"NEW-01", L"'5'");
    return Answer::Yes;
  };
  editor.btnDelete();
  ASSERT_EQ(messages.size(), 2U);
  EXPECT_TRUE(messages[1].text.starts_with(L"This configuration is currently being used"));
  EXPECT_EQ(count(), L"3");
  EXPECT_EQ(editor.rows.rowCount(), 3U);
}

TEST_P(SettingsConflictTest, AConfigurationThatAnotherTookFromItsWorkstationMayBeDeleted) {
  openSite(9);
  site.run(L"update System_workstation_cfg set key_value = '1'");
  answers = {Answer::Yes};
  editor.btnDelete();
  EXPECT_EQ(count(), L"2");
}

TEST_P(SettingsConflictTest, AWorkstationReassignedHereCountsAsReassignedBeforeItIsSaved) {
  openSite(9);
  host->m_colWorkstation->Item(1)->configID = 5;
  answers = {Answer::Yes};
  editor.btnDelete();
  EXPECT_EQ(count(), L"2");
  editor.rowClicked(1);
  messages.clear();
  editor.btnDelete();
  ASSERT_EQ(messages.size(), 1U);
  EXPECT_TRUE(messages[0].text.starts_with(L"This configuration is currently being used"));
  EXPECT_EQ(count(), L"2");
}

TEST_P(SettingsConflictTest, ANumberThatAnotherTakesIsReplacedByTheNext) {
  openSite(5);
  editor.btnNew();
  applyPendingRules();
  type(txtDescription, L"Mine");
  addConfiguration(10, L"description = 'Theirs'");
  editor.btnSave();
  EXPECT_TRUE(messages.empty());
  EXPECT_EQ(description(10), L"Theirs");
  EXPECT_EQ(description(11), L"Mine");
  EXPECT_EQ(editor.currentID(), 11);
  EXPECT_FALSE(editor.isNew());
}

INSTANTIATE_TEST_SUITE_P(Paths, SettingsConflictTest, ::testing::Values(Path::Direct, Path::Remote),
                         pathName);

}  // namespace
}  // namespace tlpacscfg::test
