#include "ui/settings/view/settings_fixture.h"

namespace tlpacscfg::test {
namespace {

using enum Control;
using system::Answer;
using system::Buttons;
using Texts = std::vector<std::wstring>;
using SettingsCommandsTest = SettingsTest;

TEST_F(SettingsCommandsTest, SaveWritesTheRowAndRefreshesBothLists) {
  makeSite();
  initialise();
  showWhile([&](HWND list) {
    const HWND window = openSettings(list);
    fill(window, txtDescription, L"Fifth");
    fill(window, txtRequestFileName, L"c:\\new.xml");
    press(window, btnSave);
    EXPECT_EQ(list_view::cell(rows(window), 1, 1), L"5 - Fifth");
    EXPECT_EQ(list_view::selectedRow(rows(window)), 1);
    const HWND workstations = controlOf(list, IDC_frmPACSList_lvwPACSList);
    EXPECT_EQ(list_view::cell(workstations, 0, 2), L"5 - Fifth");
    EXPECT_EQ(list_view::cell(workstations, 0, 3), L"c:\\new.xml");
    EXPECT_EQ(list_view::selectedRow(workstations), 0);
    closeSettings(window);
    click(list, IDC_frmPACSList_btnOk);
  });
  EXPECT_EQ(stored(5, L"description"), L"Fifth");
  EXPECT_TRUE(messages.empty());
}

TEST_F(SettingsCommandsTest, NewStartsAnEmptyConfigurationOnTheFirstTab) {
  makeSite();
  edit([&](HWND window) {
    turnTo(window, 3);
    press(window, btnNew);
    EXPECT_EQ(currentTab(window), 0);
    EXPECT_EQ(text(window, txtDescription), L"");
    EXPECT_EQ(list_view::selectedRow(rows(window)), -1);
    EXPECT_FALSE(enabled(window, btnDelete));
    EXPECT_EQ(focusOf(window), control(window, txtDescription));
    awaitRules(
        window, [&] { return !enabled(window, cmbContextUpdate); }, "the rules are applied");
  });
  EXPECT_TRUE(messages.empty());
  EXPECT_EQ(count(), L"3");
}

TEST_F(SettingsCommandsTest, DeleteAsksAndShowsTheFirstConfigurationAfterwards) {
  makeSite();
  edit([&](HWND window) {
    pickRow(window, 2);
    turnTo(window, 2);
    answers = {Answer::No};
    press(window, btnDelete);
    expectQuestion(L"Are you sure you want to delete this configuration?", Buttons::YesNo);
    EXPECT_EQ(count(), L"3");
    answers = {Answer::Yes};
    press(window, btnDelete);
    EXPECT_EQ(list_view::column(rows(window), 0), (Texts{L"1", L"5"}));
    EXPECT_EQ(list_view::selectedRow(rows(window)), 0);
    EXPECT_EQ(text(window, txtDescription), L"Default");
    EXPECT_EQ(currentTab(window), 0);
    // The description of the default configuration takes no focus.
    EXPECT_EQ(focusOf(window), rows(window));
  });
  EXPECT_EQ(count(), L"2");
  EXPECT_EQ(site.value(L"select count(*) from System_offline_db_updates"), L"2");
}

TEST_F(SettingsCommandsTest, ADeletedConfigurationLeavesTheAssignmentDialogsList) {
  makeSite();
  initialise();
  showWhile([&](HWND list) {
    click(list, IDC_frmPACSList_cmdEditWorkstation);
    const HWND dialog = windowNamed(L"Workstation Setting");
    const HWND combo = controlOf(dialog, IDC_frmWorkstationSettings_cmbPACSConfig);
    EXPECT_EQ(entriesOf(combo), (Texts{L"<None>", L"1 - Default", L"5 - Five", L"9 - Nine"}));
    const HWND window = openSettings(list);
    pickRow(window, 2);
    answers = {Answer::Yes};
    press(window, btnDelete);
    EXPECT_EQ(entriesOf(combo), (Texts{L"<None>", L"1 - Default", L"5 - Five"}));
    closeSettings(window);
    click(list, IDC_frmPACSList_btnOk);
  });
}

}  // namespace
}  // namespace tlpacscfg::test
