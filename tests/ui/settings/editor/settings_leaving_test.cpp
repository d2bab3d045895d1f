#include "support/runtime_error.h"
#include "ui/settings/editor/settings_editor_test.h"

/// Leaving and deleting a configuration.
namespace tlpacscfg::test {
namespace {

using enum Control;
using system::Answer;
using system::Buttons;
using SettingsLeavingTest = SettingsEditorTest;

constexpr const wchar_t* kNotDefault =
    L"You are not permitted to delete the 'Default Configuration'.";
constexpr const wchar_t* kInUse =
    L"This configuration is currently being used by at least one workstation. Please reassign the "
    L"workstation to another configuration and then attempt to delete again.";

TEST_F(SettingsLeavingTest, ABlankNewConfigurationIsGivenUpWithoutAQuestion) {
  makeSite();
  open(5);
  editor.btnNew();
  applyPendingRules();
  editor.rowClicked(2);
  EXPECT_TRUE(messages.empty());
  EXPECT_FALSE(editor.isNew());
  EXPECT_TRUE(editor.deleteEnabled);
  EXPECT_EQ(9, editor.currentID());
  EXPECT_EQ(L"Nine", editor.form[txtDescription].text);
  EXPECT_EQ(2u, editor.selectedRow);
}

TEST_F(SettingsLeavingTest, ARowClickWithoutEditsShowsTheOtherConfiguration) {
  makeSite();
  open(5);
  editor.rowClicked(0);
  EXPECT_TRUE(messages.empty());
  EXPECT_EQ(1, editor.currentID());
  EXPECT_FALSE(editor.form[txtDescription].enabled);
  EXPECT_TRUE(editor.rulesWanted);
}

TEST_F(SettingsLeavingTest, ARowClickAnsweredYesSavesAndMovesOn) {
  makeSite();
  open(5);
  type(txtDescription, L"Changed");
  answers = {Answer::Yes};
  editor.rowClicked(2);
  expectAsked(kSaveQuestion, Buttons::YesNoCancel);
  EXPECT_EQ(L"Changed", description(5));
  EXPECT_EQ(9, editor.currentID());
  EXPECT_EQ(2u, editor.selectedRow);
  EXPECT_EQ(L"5 - Changed", editor.rows.cell(1, ConfigurationRows::kConfiguration));
  EXPECT_EQ(L"Changed", hostDescription(5));
  EXPECT_EQ(1, listRefreshes);
}

TEST_F(SettingsLeavingTest, ARowClickAnsweredNoDropsTheEdits) {
  makeSite();
  open(5);
  type(txtDescription, L"Changed");
  const auto before = host->m_colPACSConfig;
  answers = {Answer::No};
  editor.rowClicked(2);
  EXPECT_EQ(L"Five", description(5));
  EXPECT_EQ(before, host->m_colPACSConfig);
  EXPECT_EQ(0, listRefreshes);
  EXPECT_EQ(9, editor.currentID());
  editor.rowClicked(1);
  EXPECT_EQ(L"Five", editor.form[txtDescription].text);
  EXPECT_EQ(1u, messages.size());
}

TEST_F(SettingsLeavingTest, ARowClickAnsweredCancelJumpsBackToTheEditedRow) {
  makeSite();
  open(5);
  type(txtDescription, L"Changed");
  answers = {Answer::Cancel};
  editor.rowClicked(2);
  EXPECT_EQ(5, editor.currentID());
  EXPECT_EQ(1u, editor.selectedRow);
  EXPECT_EQ(L"Changed", editor.form[txtDescription].text);
  EXPECT_EQ(L"Five", description(5));
}

TEST_F(SettingsLeavingTest, ARowClickAnsweredYesJumpsBackWhenACheckFails) {
  makeSite();
  open(5);
  type(txtDescription, L" ");
  answers = {Answer::Yes};
  editor.rowClicked(2);
  ASSERT_EQ(2u, messages.size());
  EXPECT_EQ(kBlankDescription, messages[1].text);
  EXPECT_EQ(5, editor.currentID());
  EXPECT_EQ(1u, editor.selectedRow);
}

TEST_F(SettingsLeavingTest, ARowClickAnsweredYesJumpsBackWhenTheStatementFails) {
  makeSite();
  open(5);
  type(txtContextXML, L"o'clock");
  answers = {Answer::Yes};
  EXPECT_THROW(editor.rowClicked(2), RunTimeError);
  EXPECT_EQ(5, editor.currentID());
  EXPECT_EQ(1u, editor.selectedRow);
  EXPECT_EQ(L"o'clock", editor.form[txtContextXML].text);
}

TEST_F(SettingsLeavingTest, LeavingANewConfigurationAsksAndCanBeAnsweredEveryWay) {
  makeSite();
  open(5);
  editor.btnNew();
  applyPendingRules();
  type(txtDescription, L"Ten");

  answers = {Answer::Cancel};
  editor.rowClicked(2);
  expectAsked(kNewQuestion, Buttons::YesNoCancel);
  EXPECT_TRUE(editor.isNew());
  EXPECT_EQ(std::nullopt, editor.selectedRow);
  EXPECT_EQ(L"Ten", editor.form[txtDescription].text);

  type(txtDescription, L"five");
  answers = {Answer::Yes};
  editor.rowClicked(2);
  EXPECT_TRUE(editor.isNew());
  EXPECT_EQ(std::nullopt, editor.selectedRow);
  EXPECT_EQ(L"3", count());

  type(txtDescription, L"Ten");
  answers = {Answer::Yes};
  editor.rowClicked(2);
  EXPECT_FALSE(editor.isNew());
  EXPECT_EQ(L"Ten", description(10));
  EXPECT_EQ(9, editor.currentID());
  EXPECT_EQ(2u, editor.selectedRow);
  EXPECT_EQ(4u, editor.rows.rowCount());
  EXPECT_EQ(L"Ten", hostDescription(10));
  EXPECT_EQ(1, listRefreshes);
}

TEST_F(SettingsLeavingTest, ANewConfigurationAnsweredNoIsDropped) {
  makeSite();
  open(5);
  editor.btnNew();
  applyPendingRules();
  type(txtDescription, L"Ten");
  answers = {Answer::No};
  EXPECT_TRUE(editor.btnExit());
  EXPECT_EQ(L"3", count());
  EXPECT_FALSE(editor.isNew());
  EXPECT_TRUE(editor.deleteEnabled);
}

TEST_F(SettingsLeavingTest, NewAsksAboutUnsavedEdits) {
  makeSite();
  open(5);
  type(txtDescription, L"Changed");
  answers = {Answer::Cancel};
  editor.btnNew();
  expectAsked(kSaveQuestion, Buttons::YesNoCancel);
  EXPECT_FALSE(editor.isNew());
  EXPECT_EQ(5, editor.currentID());
  EXPECT_TRUE(editor.deleteEnabled);
  answers = {Answer::Yes};
  editor.btnNew();
  EXPECT_TRUE(editor.isNew());
  EXPECT_EQ(L"Changed", description(5));
  EXPECT_EQ(L"Changed", hostDescription(5));
  EXPECT_EQ(1, listRefreshes);
  EXPECT_EQ(std::nullopt, editor.selectedRow);
}

TEST_F(SettingsLeavingTest, ExitHandsTheConfigurationsOverAndRefreshesTheList) {
  makeSite();
  open(5);
  const auto before = host->m_colPACSConfig;
  EXPECT_TRUE(editor.btnExit());
  EXPECT_NE(before, host->m_colPACSConfig);
  EXPECT_EQ(1, listRefreshes);
  EXPECT_EQ(4u, host->m_colPACSConfig->ColPACSConfigs->count());
}

TEST_F(SettingsLeavingTest, ExitStaysWhenItsQuestionIsCancelled) {
  makeSite();
  open(5);
  type(txtCloseDictation, L"x");
  const auto before = host->m_colPACSConfig;
  answers = {Answer::Cancel};
  EXPECT_FALSE(editor.btnExit());
  EXPECT_EQ(before, host->m_colPACSConfig);
  EXPECT_EQ(0, listRefreshes);
}

TEST_F(SettingsLeavingTest, TheFirstRowIsRefusedEvenWhenNoWorkstationUsesIt) {
  makeSite();
  open(1);
  ASSERT_FALSE(host->m_colWorkstation->CheckforAttachedWS(1));
  editor.btnDelete();
  EXPECT_EQ(1u, messages.size());
  expectAsked(kNotDefault, Buttons::Ok);
  EXPECT_EQ(L"Default", description(1));
}

TEST_F(SettingsLeavingTest, TheOnlyRowCannotBeDeletedWhateverItsIdentifier) {
  addConsistent(7, L"Seven");
  open(7);
  editor.btnDelete();
  expectAsked(kNotDefault, Buttons::Ok);
  EXPECT_EQ(L"1", count());
}

TEST_F(SettingsLeavingTest, WithoutARowDeleteDoesNothing) {
  open(0);
  editor.btnDelete();
  EXPECT_TRUE(messages.empty());
}

TEST_F(SettingsLeavingTest, AConfigurationInUseIsRefusedBeforeTheQuestion) {
  makeSite();
  open(9);
  editor.btnDelete();
  ASSERT_EQ(1u, messages.size());
  expectAsked(kInUse, Buttons::Ok);
  EXPECT_EQ(L"3", count());
}

TEST_F(SettingsLeavingTest, DeleteAnsweredNoKeepsTheConfiguration) {
  makeSite();
  open(5);
  answers = {Answer::No};
  editor.btnDelete();
  expectAsked(kDeleteQuestion, Buttons::YesNo);
  EXPECT_EQ(L"3", count());
  EXPECT_EQ(5, editor.currentID());
}

TEST_F(SettingsLeavingTest, DeleteAnsweredYesShowsTheFirstConfiguration) {
  makeSite();
  open(5);
  editor.descriptionFocusWanted = false;
  answers = {Answer::Yes};
  editor.btnDelete();
  EXPECT_EQ(L"0", site.value(L"select count(*) from Interface_PACS_cfg where config_id = 5"));
  EXPECT_EQ(2u, editor.rows.rowCount());
  EXPECT_EQ(0u, editor.selectedRow);
  EXPECT_EQ(1, editor.currentID());
  EXPECT_EQ(L"Default", editor.form[txtDescription].text);
  EXPECT_TRUE(editor.descriptionFocusWanted);
  EXPECT_EQ(L"<none>", hostDescription(5));
  EXPECT_EQ(1, listRefreshes);
  EXPECT_EQ(1, dialogRefreshes);
}

TEST_F(SettingsLeavingTest, ADeleteThatFailsIsReportedAndKeepsTheConfiguration) {
  makeSite();
  open(5);
  site.run(
      L"create trigger keep before delete on Interface_PACS_cfg "
      L"begin select raise(abort, 'kept'); end");
  answers = {Answer::Yes};
  editor.btnDelete();
  ASSERT_EQ(2u, messages.size());
  EXPECT_TRUE(messages[1].text.starts_with(L"Error Deleting configID = 5 from the DB. \r\n"));
  EXPECT_EQ(3u, editor.rows.rowCount());
  EXPECT_EQ(L"Five", hostDescription(5));
}

}  // namespace
}  // namespace tlpacscfg::test
