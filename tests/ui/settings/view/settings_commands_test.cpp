#include "ui/settings/view/settings_test.h"

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

TEST_F(SettingsCommandsTest, EveryFailedCheckHasItsMessageAndNothingIsWritten) {
  makeSite();
  edit([&](HWND window) {
    pick(window, cmbStartPACS, 1);
    pick(window, cmbManualEntry, 1);
    press(window, btnSave);
    expectPlainBox(
        L"The 'Confirm Start Integration' microphone button and the 'Switch To Manual Entry' "
        L"microphone button cannot be the same button. Please change one and save again.");
    pick(window, cmbManualEntry, 0);

    messages.clear();
    fill(window, txtDescription, L"  ");
    press(window, btnSave);
    expectPlainBox(L"The Configuration Description Field cannot be blank.");

    messages.clear();
    fill(window, txtDescription, L" nINE");
    press(window, btnSave);
    expectPlainBox(
        L"The configuration name ' nINE' is already in use by another configuration.  Please "
        L"change the configuration name in the 'Description' field.");
    fill(window, txtDescription, L"Five");

    messages.clear();
    press(window, chkResponseEnabled);
    pick(window, cmbResponseType, 1);
    fill(window, txtResponseFileName, L"x{AF}");
    press(window, btnSave);
    expectPlainBox(
        L"Applicable Fields must be set if the URL Address contains the {AF} field marker.");

    messages.clear();
    pick(window, cmbResponseType, 2);
    press(window, btnSave);
    expectPlainBox(
        L"Applicable Fields must be set if the HL7 Message contains the {AF} field marker.");
    fill(window, txtResponseFileName, L"{AF}");

    messages.clear();
    pickCode(window, cmbVendorType, 8);
    press(window, btnSave);
    expectPlainBox(L"TCP/IP Port is not valid.  Please enter a port number between 1 and 65000.");

    messages.clear();
    pickCode(window, cmbVendorType, 5);
    fill(window, txtPort, L"65001");
    press(window, btnSave);
    expectPlainBox(L"Port is not valid.  Please enter a port number between 0 and 65000.");
    EXPECT_EQ(stored(5, L"pacs_type"), L"0");

    messages.clear();
    fill(window, txtPort, L"65000");
    press(window, btnSave);
    EXPECT_TRUE(messages.empty());
  });
  EXPECT_EQ(stored(5, L"pacs_type"), L"5");
  EXPECT_EQ(stored(5, L"flag6"), L"65000");
}

TEST_F(SettingsCommandsTest, SeveralFailedChecksShowTheirMessagesInOrder) {
  makeSite();
  edit([&](HWND window) {
    fill(window, txtDescription, L"");
    pickCode(window, cmbVendorType, 8);
    fill(window, txtPort, L"");
    press(window, btnSave);
    ASSERT_EQ(messages.size(), 2U);
    EXPECT_EQ(messages[0].text, L"The Configuration Description Field cannot be blank.");
    EXPECT_EQ(messages[1].text,
              L"TCP/IP Port is not valid.  Please enter a port number between 1 and 65000.");
  });
}

TEST_F(SettingsCommandsTest, APortOfAFormatThatUsesNoneBecomesZeroWithoutAWord) {
  makeSite();
  edit([&](HWND window) {
    pickCode(window, cmbVendorType, 1);
    fill(window, txtPort, L"abc");
    press(window, btnSave);
    EXPECT_EQ(text(window, txtPort), L"0");
  });
  EXPECT_TRUE(messages.empty());
  EXPECT_EQ(stored(5, L"flag6"), L"0");
  EXPECT_EQ(stored(5, L"pacs_type"), L"1");
}

TEST_F(SettingsCommandsTest, APortThatDoesNotFitIsAnErrorAndTheEditsStay) {
  makeSite();
  edit([&](HWND window) {
    fill(window, txtPort, L"4294967376");
    press(window, btnSave);
    expectPlainBox(L"Run-time error '6':\r\nOverflow");
    EXPECT_EQ(text(window, txtPort), L"4294967376");
    EXPECT_EQ(stored(5, L"flag6"), L"0");
    messages.clear();
    pickCode(window, cmbVendorType, 8);
    press(window, btnSave);
    expectPlainBox(L"TCP/IP Port is not valid.  Please enter a port number between 1 and 65000.");
  });
}

TEST_F(SettingsCommandsTest, AQuoteInALaterTextIsAnErrorAndTheEditsStay) {
  makeSite();
  edit([&](HWND window) {
    fill(window, txtDescription, L"It's");
    fill(window, txtContextXML, L"o'clock.xml");
    press(window, btnSave);
    ASSERT_EQ(messages.size(), 1U);
    EXPECT_TRUE(messages[0].text.starts_with(L"Run-time error '"));
    EXPECT_EQ(text(window, txtContextXML), L"o'clock.xml");
    EXPECT_EQ(stored(5, L"description"), L"Five");
    EXPECT_EQ(list_view::cell(rows(window), 1, 1), L"5 - Five");
    messages.clear();
    fill(window, txtContextXML, L"clock.xml");
    press(window, btnSave);
    EXPECT_TRUE(messages.empty());
  });
  EXPECT_EQ(stored(5, L"description"), L"It's");
  EXPECT_EQ(stored(5, L"string4"), L"clock.xml");
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
    waitUntil([&] { return !enabled(window, cmbContextUpdate); }, "the rules are applied");
  });
  EXPECT_TRUE(messages.empty());
  EXPECT_EQ(count(), L"3");
}

TEST_F(SettingsCommandsTest, NewAfterABrokerCanBeEditedInEveryField) {
  addSettled(1, L"Default", L"pacs_type = 4, pacs_request_password = 1, bidirectional = 1");
  edit([&](HWND window) {
    EXPECT_FALSE(enabled(window, txtRequestFileName));
    answers = {Answer::No};
    press(window, btnNew);
    waitUntil([&] { return enabled(window, txtRequestFileName); }, "the rules are applied");
    EXPECT_TRUE(enabled(window, cmbStartPACS));
    EXPECT_TRUE(enabled(window, txtDescription));
  });
}

TEST_F(SettingsCommandsTest, ANewConfigurationIsStoredUnderTheNextIdentifier) {
  makeSite();
  edit([&](HWND window) {
    press(window, btnNew);
    fill(window, txtDescription, L"Ten");
    press(window, btnSave);
    EXPECT_EQ(list_view::cell(rows(window), 3, 1), L"10 - Ten");
    EXPECT_EQ(list_view::selectedRow(rows(window)), 3);
    EXPECT_TRUE(enabled(window, btnDelete));
    fill(window, txtDescription, L"Ten again");
    press(window, btnSave);
  });
  EXPECT_EQ(stored(10, L"description"), L"Ten again");
  EXPECT_EQ(count(), L"4");
}

TEST_F(SettingsCommandsTest, TheFirstConfigurationOfASiteGetsTheIdentifierOne) {
  edit([&](HWND window) {
    fill(window, txtDescription, L"First");
    press(window, btnSave);
    EXPECT_EQ(list_view::cell(rows(window), 0, 1), L"1 - First");
  });
  EXPECT_EQ(stored(1, L"description"), L"First");
}

TEST_F(SettingsCommandsTest, TheDefaultConfigurationCannotBeDeleted) {
  makeSite();
  edit([&](HWND window) {
    pickRow(window, 0);
    press(window, btnDelete);
    expectQuestion(L"You are not permitted to delete the 'Default Configuration'.", Buttons::Ok);
  });
  EXPECT_EQ(messages.size(), 1U);
  EXPECT_EQ(count(), L"3");
}

TEST_F(SettingsCommandsTest, AConfigurationInUseCannotBeDeleted) {
  makeSite();
  edit([&](HWND window) {
    press(window, btnDelete);
    expectQuestion(
        L"This configuration is currently being used by at least one workstation. Please reassign "
        L"the workstation to another configuration and then attempt to delete again.",
        Buttons::Ok);
  });
  EXPECT_EQ(messages.size(), 1U);
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

TEST_F(SettingsCommandsTest, WithoutAConfigurationDeleteDoesNothing) {
  edit([&](HWND window) { press(window, btnDelete); });
  EXPECT_TRUE(messages.empty());
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

TEST_F(SettingsCommandsTest, AFailedDeleteIsReportedAndTheConfigurationStays) {
  makeSite();
  site.run(
      L"create trigger keep before delete on Interface_PACS_cfg begin select raise(abort, "
      L"'kept'); end");
  edit([&](HWND window) {
    pickRow(window, 2);
    answers = {Answer::Yes};
    press(window, btnDelete);
    ASSERT_EQ(messages.size(), 2U);
    EXPECT_TRUE(messages[1].text.starts_with(L"Error Deleting configID = 9 from the DB. \r\n"));
    EXPECT_EQ(list_view::rowCount(rows(window)), 3);
  });
  EXPECT_EQ(count(), L"3");
}

}  // namespace
}  // namespace tlpacscfg::test
