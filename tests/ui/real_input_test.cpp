#include "ui/real_input.h"

#include <windows.h>
#include <commctrl.h>

#include "support/text.h"
#include "ui/settings_test.h"

namespace tlpacscfg::test {
namespace {

using enum Control;
using namespace real_input;

constexpr const wchar_t* kDialogTitle = L"Workstation Setting";

/// Journeys of an administrator with the keyboard and the mouse. They run alone.
class RealInputTest : public SettingsTest {
 protected:
  RealInputTest() {
    if (realMessageBox()) doors::showMessage = realMessageBox();
  }

  /// The message boxes of these tests are real.
  static void SetUpTestSuite() { realMessageBox() = doors::showMessage; }
  static decltype(doors::showMessage)& realMessageBox() {
    static decltype(doors::showMessage) box;
    return box;
  }

  void journey(const std::function<void(HWND list)>& script) {
    initialise();
    showWhile([&](HWND list) {
      bringToFront(list);
      script(list);
    });
  }

  static HWND frontWindow(const std::wstring& title) {
    const HWND window = windowNamed(title);
    bringToFront(window);
    return window;
  }

  static void awaitFocus(HWND window, Control which) {
    waitUntil([&] { return focusOf(window) == control(window, which); },
              "the focus on " + toUtf8(design(which).name));
  }

  static void awaitText(HWND control, const std::wstring& text) {
    waitUntil([&] { return textOf(control) == text; }, "the text " + toUtf8(text));
  }

  static void awaitGone(const std::wstring& title) {
    waitUntil([&] { return !isShown(title); }, "the end of " + toUtf8(title));
  }

  static HWND workstations(HWND list) { return controlOf(list, IDC_frmPACSList_lvwPACSList); }

  static POINT placeOfRow(HWND list, int row) {
    RECT place{};
    place.left = LVIR_LABEL;
    place.top = 1;
    SendMessageW(list, LVM_GETSUBITEMRECT, static_cast<WPARAM>(row),
                 reinterpret_cast<LPARAM>(&place));
    return {place.left + 10, (place.top + place.bottom) / 2};
  }

  static POINT placeOfTab(HWND tabs, int tab) {
    RECT place{};
    SendMessageW(tabs, TCM_GETITEMRECT, static_cast<WPARAM>(tab), reinterpret_cast<LPARAM>(&place));
    return {(place.left + place.right) / 2, (place.top + place.bottom) / 2};
  }

  static void clickBox(HWND window, Control box) {
    const bool before = ticked(window, box);
    const HWND button = control(window, box);
    RECT client{};
    GetClientRect(button, &client);
    clickAt(button, {8, client.bottom / 2});
    waitUntil([&] { return ticked(window, box) != before; },
              "a click on " + toUtf8(design(box).name));
  }

  void leaveList(HWND list) {
    bringToFront(list);
    mnemonic(L'O');
    awaitGone(kListTitle);
  }

  std::wstring assigned() {
    return site.value(L"select key_value from System_workstation_cfg").value_or(L"<null>");
  }
};

TEST_F(RealInputTest, ANewConfigurationIsMadeAndAssignedWithoutTheMouse) {
  makeSite();
  journey([&](HWND list) {
    mnemonic(L'C');
    HWND window = frontWindow(kSettingsTitle);
    awaitFocus(window, txtDescription);
    mnemonic(L'N');
    awaitText(control(window, txtDescription), L"");
    awaitFocus(window, txtDescription);
    write(L"New PACS");
    key(VK_TAB);
    awaitFocus(window, cmbVendorType);
    key(VK_DOWN);
    waitUntil([&] { return position(window, cmbVendorType) == 1; }, "the vendor format");
    mnemonic(L'Q');
    awaitFocus(window, txtRequestFileName);
    write(L"C:\\in\\request.xml");
    mnemonic(L'R');
    awaitFocus(window, chkResponseEnabled);
    key(VK_SPACE);
    waitUntil([&] { return enabled(window, txtResponseFileName); }, "the response");
    key(VK_TAB);
    awaitFocus(window, cmbResponseType);
    key(VK_TAB);
    awaitFocus(window, txtResponseFileName);
    write(L"C:\\out\\response.xml");
    mnemonic(L'S');
    waitUntil([&] { return list_view::rowCount(rows(window)) == 4; }, "the save");
    mnemonic(L'E');
    awaitGone(kSettingsTitle);
    bringToFront(list);
    mnemonic(L'W');
    const HWND dialog = frontWindow(kDialogTitle);
    key(VK_END);
    const HWND combo = controlOf(dialog, IDC_frmWorkstationSettings_cmbPACSConfig);
    awaitText(combo, L"10 - New PACS");
    key(VK_RETURN);
    awaitGone(kDialogTitle);
    leaveList(list);
  });
  EXPECT_EQ(stored(10, L"description"), L"New PACS");
  EXPECT_EQ(stored(10, L"pacs_type"), L"1");
  EXPECT_EQ(stored(10, L"request_filename"), L"C:\\in\\request.xml");
  EXPECT_EQ(stored(10, L"bidirectional"), L"1");
  EXPECT_EQ(stored(10, L"response_filename"), L"C:\\out\\response.xml");
  EXPECT_EQ(assigned(), L"10");
}

TEST_F(RealInputTest, EachTabIsEditedWithTheMouse) {
  makeSite();
  journey([&](HWND list) {
    clickOn(controlOf(list, IDC_frmPACSList_cmdEditConfig));
    const HWND window = frontWindow(kSettingsTitle);
    const HWND tabs = control(window, SSPACSOptions);
    const auto turn = [&](int tab) {
      clickAt(tabs, placeOfTab(tabs, tab));
      waitUntil([&] { return currentTab(window) == tab; }, "the tab");
    };
    turn(1);
    clickBox(window, chkDeleteFlag);
    clickBox(window, chkUserLogon);
    waitUntil([&] { return enabled(window, radLogonMapCorvane_2); }, "the mapping");
    clickBox(window, radLogonMapCorvane_2);
    turn(2);
    clickBox(window, chkResponseEnabled);
    waitUntil([&] { return enabled(window, chkPaused); }, "the response");
    clickBox(window, chkPaused);
    turn(3);
    clickBox(window, chkEnableContextPolling);
    waitUntil([&] { return enabled(window, optMultiAccessionHandlingOption_2); }, "the options");
    clickBox(window, optMultiAccessionHandlingOption_2);
    turn(4);
    clickBox(window, chkCloseDictation);
    clickOn(control(window, btnSave));
    waitUntil([&] { return stored(5, L"flag16") == L"1"; }, "the save");
    clickOn(control(window, btnExit));
    awaitGone(kSettingsTitle);
    leaveList(list);
  });
  EXPECT_EQ(stored(5, L"flag7"), L"1");
  EXPECT_EQ(stored(5, L"user_mapping_option"), L"3");
  EXPECT_EQ(stored(5, L"response_for_paused_jobs"), L"1");
  EXPECT_EQ(stored(5, L"flag9"), L"10");
  EXPECT_EQ(stored(5, L"flag11"), L"2");
}

TEST_F(RealInputTest, CtrlTabAndCtrlPageKeysTurnTheTabs) {
  makeSite();
  journey([&](HWND list) {
    mnemonic(L'C');
    const HWND window = frontWindow(kSettingsTitle);
    const auto expectTab = [&](int tab) {
      waitUntil([&] { return currentTab(window) == tab; }, "tab " + std::to_string(tab));
    };
    for (const int tab : {1, 2, 3, 4, 0}) {
      keys({VK_CONTROL, VK_TAB});
      expectTab(tab);
    }
    keys({VK_CONTROL, VK_SHIFT, VK_TAB});
    expectTab(4);
    keys({VK_CONTROL, VK_PRIOR});
    expectTab(3);
    keys({VK_CONTROL, VK_NEXT});
    expectTab(4);
    awaitFocus(window, chkCloseDictation);
    key(VK_ESCAPE);
    awaitGone(kSettingsTitle);
    leaveList(list);
  });
}

TEST_F(RealInputTest, AltDownOpensTheAccessionFieldsAndTheBlankTicksThem) {
  addSettled(1, L"Default");
  addWorkstation(kComputer);
  journey([&](HWND list) {
    mnemonic(L'C');
    const HWND window = frontWindow(kSettingsTitle);
    mnemonic(L'C');
    awaitFocus(window, chkEnableContextPolling);
    const HWND combo = control(window, cmpAccessionFields);
    key(VK_TAB);
    waitUntil([&] { return focusOf(window) == combo; }, "the focus on the fields");
    keys({VK_MENU, VK_DOWN});
    waitUntil([&] { return SendMessageW(combo, CB_GETDROPPEDSTATE, 0, 0) != 0; }, "the list");
    key(VK_SPACE);
    awaitText(combo, L"Accession ID");
    key(VK_END);
    key(VK_SPACE);
    awaitText(combo, L"Accession ID, Visit ID");
    key(VK_RETURN);
    waitUntil([&] { return SendMessageW(combo, CB_GETDROPPEDSTATE, 0, 0) == 0; }, "no list");
    mnemonic(L'S');
    waitUntil([&] { return stored(1, L"string3") == L"Accession ID,Visit ID"; }, "the save");
    key(VK_ESCAPE);
    awaitGone(kSettingsTitle);
    leaveList(list);
  });
}

TEST_F(RealInputTest, ClicksTickTheAccessionFieldsAndLeaveTheListOpen) {
  addSettled(1, L"Default");
  addWorkstation(kComputer);
  journey([&](HWND list) {
    mnemonic(L'C');
    const HWND window = frontWindow(kSettingsTitle);
    mnemonic(L'C');
    awaitFocus(window, chkEnableContextPolling);
    const HWND combo = control(window, cmpAccessionFields);
    clickOn(combo);
    waitUntil([&] { return SendMessageW(combo, CB_GETDROPPEDSTATE, 0, 0) != 0; }, "the list");
    COMBOBOXINFO info{};
    info.cbSize = sizeof(info);
    GetComboBoxInfo(combo, &info);
    const auto clickEntry = [&](WPARAM entry) {
      RECT place{};
      SendMessageW(info.hwndList, LB_GETITEMRECT, entry, reinterpret_cast<LPARAM>(&place));
      clickAt(info.hwndList, {place.left + 30, (place.top + place.bottom) / 2});
    };
    clickEntry(1);
    awaitText(combo, L"Account");
    clickEntry(3);
    awaitText(combo, L"Account, Location");
    clickEntry(1);
    awaitText(combo, L"Location");
    EXPECT_NE(SendMessageW(combo, CB_GETDROPPEDSTATE, 0, 0), 0);
    key(VK_ESCAPE);
    waitUntil([&] { return SendMessageW(combo, CB_GETDROPPEDSTATE, 0, 0) == 0; }, "no list");
    mnemonic(L'S');
    waitUntil([&] { return stored(1, L"string3") == L"Location"; }, "the save");
    key(VK_ESCAPE);
    awaitGone(kSettingsTitle);
    leaveList(list);
  });
}

TEST_F(RealInputTest, AnotherRowsQuestionIsCancelledThenAnsweredYes) {
  makeSite();
  journey([&](HWND list) {
    mnemonic(L'C');
    const HWND window = frontWindow(kSettingsTitle);
    awaitFocus(window, txtDescription);
    write(L"Fifth");
    awaitText(control(window, txtDescription), L"Fifth");
    clickAt(rows(window), placeOfRow(rows(window), 2));
    frontWindow(L"TLPACSCFG");
    key(VK_ESCAPE);
    awaitGone(L"TLPACSCFG");
    waitUntil([&] { return list_view::selectedRow(rows(window)) == 1; }, "the edited row");
    EXPECT_EQ(text(window, txtDescription), L"Fifth");
    bringToFront(window);
    clickAt(rows(window), placeOfRow(rows(window), 2));
    frontWindow(L"TLPACSCFG");
    key(VK_RETURN);
    awaitGone(L"TLPACSCFG");
    waitUntil([&] { return text(window, txtDescription) == L"Nine"; }, "the other row");
    EXPECT_EQ(list_view::selectedRow(rows(window)), 2);
    bringToFront(window);
    key(VK_ESCAPE);
    awaitGone(kSettingsTitle);
    leaveList(list);
  });
  EXPECT_EQ(stored(5, L"description"), L"Fifth");
}

TEST_F(RealInputTest, AConfigurationIsDeletedWithTheKeys) {
  makeSite();
  journey([&](HWND list) {
    mnemonic(L'C');
    const HWND window = frontWindow(kSettingsTitle);
    clickAt(rows(window), placeOfRow(rows(window), 2));
    awaitText(control(window, txtDescription), L"Nine");
    mnemonic(L'D');
    frontWindow(L"TLPACSCFG");
    key(VK_RETURN);
    awaitGone(L"TLPACSCFG");
    waitUntil([&] { return list_view::rowCount(rows(window)) == 2; }, "the delete");
    bringToFront(window);
    key(VK_ESCAPE);
    awaitGone(kSettingsTitle);
    leaveList(list);
  });
  EXPECT_EQ(site.value(L"select count(*) from Interface_PACS_cfg"), L"2");
}

TEST_F(RealInputTest, AFailedCheckIsReadAndCorrected) {
  makeSite();
  journey([&](HWND list) {
    mnemonic(L'C');
    const HWND window = frontWindow(kSettingsTitle);
    awaitFocus(window, txtDescription);
    write(L"nine");
    mnemonic(L'S');
    frontWindow(L"TLPACSCFG");
    key(VK_RETURN);
    awaitGone(L"TLPACSCFG");
    bringToFront(window);
    awaitFocus(window, txtDescription);
    key(VK_END);
    write(L"teen");
    mnemonic(L'S');
    waitUntil([&] { return stored(5, L"description") == L"nineteen"; }, "the save");
    key(VK_ESCAPE);
    awaitGone(kSettingsTitle);
    leaveList(list);
  });
}

TEST_F(RealInputTest, ADoubleClickOpensTheAssignmentAndItsMnemonicConfirms) {
  makeSite();
  journey([&](HWND list) {
    doubleClickAt(workstations(list), placeOfRow(workstations(list), 0));
    const HWND dialog = frontWindow(kDialogTitle);
    key(VK_HOME);
    awaitText(controlOf(dialog, IDC_frmWorkstationSettings_cmbPACSConfig), L"<None>");
    mnemonic(L'O');
    awaitGone(kDialogTitle);
    waitUntil([&] { return list_view::rowCount(workstations(list)) == 0; }, "the refreshed list");
    leaveList(list);
  });
  EXPECT_EQ(assigned(), L"0");
}

TEST_F(RealInputTest, TextsOfEveryScriptAreTyped) {
  makeSite();
  const std::wstring name = L"\u0141\u00f3d\u017a \u653e\u5c04 \u03a9";
  journey([&](HWND list) {
    mnemonic(L'C');
    const HWND window = frontWindow(kSettingsTitle);
    awaitFocus(window, txtDescription);
    write(name);
    awaitText(control(window, txtDescription), name);
    mnemonic(L'S');
    waitUntil([&] { return stored(5, L"description") == name; }, "the save");
    key(VK_ESCAPE);
    awaitGone(kSettingsTitle);
    leaveList(list);
  });
}

TEST_F(RealInputTest, EscInTheListAsksForTheEditorsUnsavedEdits) {
  makeSite();
  journey([&](HWND list) {
    mnemonic(L'C');
    const HWND window = frontWindow(kSettingsTitle);
    awaitFocus(window, txtDescription);
    write(L"Dropped");
    awaitText(control(window, txtDescription), L"Dropped");
    bringToFront(list);
    key(VK_ESCAPE);
    frontWindow(L"TLPACSCFG");
    key(L'N');
    awaitGone(kSettingsTitle);
    awaitGone(kListTitle);
  });
  EXPECT_EQ(stored(5, L"description"), L"Five");
}

TEST_F(RealInputTest, KeysInAClosedListActAsChoices) {
  makeSite();
  journey([&](HWND list) {
    mnemonic(L'C');
    const HWND window = frontWindow(kSettingsTitle);
    awaitFocus(window, txtDescription);
    key(VK_TAB);
    awaitFocus(window, cmbVendorType);
    key(VK_END);
    waitUntil([&] { return !enabled(window, txtRequestFileName); }, "the rules of TCP/IP");
    key(VK_HOME);
    waitUntil([&] { return enabled(window, txtRequestFileName); }, "the rules of none");
    key(VK_ESCAPE);
    awaitGone(kSettingsTitle);
    leaveList(list);
  });
}

}  // namespace
}  // namespace tlpacscfg::test
