#include "ui/settings/view/settings_fixture.h"
#include "ui/show_form/show_form.h"
#include "ui/win32/form.h"

namespace tlpacscfg::test {
namespace {

using enum Control;
using system::Answer;
using system::Buttons;
using SettingsLeavingTest = SettingsTest;

TEST_F(SettingsLeavingTest, ACancelledQuestionSelectsTheEditedRowAgain) {
  makeSite();
  edit([&](HWND window) {
    fill(window, txtDescription, L"Changed");
    pickRowAndAnswer(window, 2, Answer::Cancel, 1);
    expectQuestion(kSaveQuestion, Buttons::YesNoCancel);
    EXPECT_EQ(text(window, txtDescription), L"Changed");
  });
}

TEST_F(SettingsLeavingTest, AClickOnTheShownRowOffersToDropItsEdits) {
  makeSite();
  edit([&](HWND window) {
    fill(window, txtDescription, L"Changed");
    answers = {Answer::No};
    list_view::clickRow(rows(window), 1, 1);
    waitUntil([&] { return text(window, txtDescription) == L"Five"; }, "the edits are gone");
    expectQuestion(kSaveQuestion, Buttons::YesNoCancel);
  });
}

TEST_F(SettingsLeavingTest, AMouseClickOnAnotherRowShowsItOnce) {
  makeSite();
  edit([&](HWND window) {
    fill(window, txtDescription, L"Changed");
    answers = {Answer::No};
    list_view::clickRow(rows(window), 2, 1);
    waitUntil([&] { return text(window, txtDescription) == L"Nine"; }, "the row is shown");
  });
  EXPECT_EQ(messages.size(), 1U);
}

TEST_F(SettingsLeavingTest, AClickBesideTheRowsKeepsTheSelectionAndAsksNothing) {
  makeSite();
  edit([&](HWND window) {
    fill(window, txtDescription, L"Changed");
    list_view::clickBelowRows(rows(window));
    list_view::rightClickBelowRows(rows(window));
    EXPECT_EQ(list_view::selectedRow(rows(window)), 1);
    press(window, btnSave);
    EXPECT_EQ(list_view::cell(rows(window), 1, 1), L"5 - Changed");
  });
  EXPECT_TRUE(messages.empty());
}

TEST_F(SettingsLeavingTest, TheClosingBoxIsTheExitButton) {
  makeSite();
  edit([&](HWND window) {
    fill(window, txtDescription, L"Changed");
    answers = {Answer::Cancel};
    SendMessageW(window, WM_CLOSE, 0, 0);
    expectQuestion(kSaveQuestion, Buttons::YesNoCancel);
    EXPECT_TRUE(isShown(kSettingsTitle));
    answers = {Answer::No};
    SendMessageW(window, WM_CLOSE, 0, 0);
    EXPECT_FALSE(isShown(kSettingsTitle));
  });
}

TEST_F(SettingsLeavingTest, ClosingTheListClosesTheEditorUnlessItsUserCancels) {
  makeSite();
  initialise();
  showWhile([&](HWND list) {
    const HWND window = openSettings(list);
    fill(window, txtDescription, L"Changed");
    answers = {Answer::Cancel};
    click(list, IDC_frmPACSList_btnOk);
    EXPECT_TRUE(isShown(kSettingsTitle));
    EXPECT_TRUE(isShown(kListTitle));
    EXPECT_TRUE(config_->ConfigLoaded);
    answers = {Answer::No};
    click(list, IDC_frmPACSList_btnOk);
    EXPECT_FALSE(isShown(kSettingsTitle));
    EXPECT_FALSE(isShown(kListTitle));
  });
  EXPECT_FALSE(config_->ConfigLoaded);
}

TEST_F(SettingsLeavingTest, OpeningAnotherConfigurationAsksAboutUnsavedEdits) {
  makeSite();
  addWorkstation(L"READ-02");
  assign(L"READ-02", L"'9'");
  initialise();
  showWhile([&](HWND list) {
    const HWND window = openSettings(list);
    fill(window, txtDescription, L"Changed");
    list_view::selectRow(controlOf(list, IDC_frmPACSList_lvwPACSList), 1);
    answers = {Answer::Cancel};
    click(list, IDC_frmPACSList_cmdEditConfig);
    EXPECT_EQ(text(window, txtDescription), L"Changed");
    answers = {Answer::No};
    click(list, IDC_frmPACSList_cmdEditConfig);
    EXPECT_EQ(text(window, txtDescription), L"Nine");
    closeSettings(window);
    click(list, IDC_frmPACSList_btnOk);
  });
}

TEST_F(SettingsLeavingTest, TheFocusGoesBackToTheListWindow) {
  makeSite();
  initialise();
  showWhile([&](HWND list) {
    closeSettings(openSettings(list));
    waitUntil([&] { return GetAncestor(focusOf(list), GA_ROOT) == list; },
              "the list window has the focus");
    click(list, IDC_frmPACSList_btnOk);
  });
}

TEST_F(SettingsLeavingTest, AHostThatEndsWaitsWhileEditsCannotBeSaved) {
  makeSite();
  initialise();
  const DWORD thread = GetCurrentThreadId();
  showWhile([&](HWND list) {
    const HWND window = openSettings(list);
    fill(window, Control::txtDescription, L"Changed");
    site.run(
        L"CREATE TRIGGER refuse BEFORE UPDATE ON Interface_PACS_cfg BEGIN SELECT RAISE(ABORT, "
        L"'refused'); END");
    answers = {system::Answer::Yes};
    PostThreadMessageW(thread, WM_QUIT, 3, 0);
    waitUntil([this] { return messages.size() == 2; }, "the save is refused");
    EXPECT_TRUE(messages[1].text.starts_with(L"Run-time error '40002':"));
    site.run(L"DROP TRIGGER refuse");
    waitUntil([&] { return enabled(window, Control::btnSave); }, "the window is at rest");
    EXPECT_EQ(text(window, Control::txtDescription), L"Changed");
    press(window, Control::btnSave);
    closeSettings(window);
    click(list, IDC_frmPACSList_btnOk);
  });
  MSG message{};
  EXPECT_TRUE(PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE));
  EXPECT_EQ(message.wParam, 3U);
  EXPECT_EQ(stored(5, L"description"), L"Changed");
  EXPECT_FALSE(config_->ConfigLoaded);
}

TEST_F(SettingsLeavingTest, TheSessionDoesNotEndWhileABoxAsksAboutUnsavedEdits) {
  makeSite();
  LRESULT mayEnd = -1;
  edit([&](HWND window) {
    const HWND list = GetWindow(window, GW_OWNER);
    fill(window, Control::txtDescription, L"");
    const auto usual = system::showMessage;
    system::showMessage = [&](const system::Message&) {
      if (mayEnd == -1) mayEnd = SendMessageW(list, WM_QUERYENDSESSION, 0, 0);
      return system::Answer::Ok;
    };
    press(window, Control::btnSave);
    system::showMessage = usual;
  });
  EXPECT_EQ(mayEnd, 0);
}

TEST_F(SettingsLeavingTest, AListThatStaysOpenAfterASaveShowsWhatAColleagueAssigned) {
  makeSite();
  initialise();
  showWhile([&](HWND list) {
    const HWND window = openSettings(list);
    fill(window, Control::txtDescription, L"Changed");
    site.run(L"update System_workstation_cfg set key_value = '9'");
    answers = {system::Answer::Cancel};
    click(list, IDC_frmPACSList_btnOk);
    EXPECT_EQ(list_view::cell(controlOf(list, IDC_frmPACSList_lvwPACSList), 0, 2), L"9 - Nine");
    answers = {system::Answer::No};
    click(list, IDC_frmPACSList_btnOk);
  });
  EXPECT_EQ(site.value(L"select key_value from System_workstation_cfg"), L"9");
}

TEST_F(SettingsLeavingTest, ShowFormCalledFromAQuestionOfTheEditorReturnsOne) {
  makeSite();
  int answered = -1;
  edit([&](HWND window) {
    fill(window, Control::txtDescription, L"");
    const auto usual = system::showMessage;
    system::showMessage = [&](const system::Message&) {
      if (answered < 0) answered = ShowForm(config_);
      return system::Answer::Ok;
    };
    press(window, Control::btnSave);
    system::showMessage = usual;
  });
  EXPECT_EQ(answered, 1);
}

}  // namespace
}  // namespace tlpacscfg::test
