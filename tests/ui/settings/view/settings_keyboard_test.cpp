#include <windows.h>
#include <commctrl.h>

#include "support/text.h"
#include "ui/settings/view/settings_fixture.h"

namespace tlpacscfg::test {
namespace {

using enum Control;

class SettingsKeyboardTest : public SettingsTest {
 protected:
  static void awaitFocus(HWND window, Control which) {
    waitUntil([&] { return focusOf(window) == control(window, which); },
              "the focus on " + toUtf8(design(which).name));
  }

  /// Presses Tab from each control to the next one.
  static void walk(HWND window, std::initializer_list<Control> order) {
    for (const Control next : order) {
      pressKey(window, VK_TAB);
      awaitFocus(window, next);
    }
  }
};

TEST_F(SettingsKeyboardTest, TabWalksThroughThePageTheTabsTheButtonsAndTheList) {
  makeSite();
  edit([](HWND window) {
    awaitFocus(window, txtDescription);
    walk(window, {cmbVendorType, txtPort, cmbStartPACS, cmbManualEntry, cmbPollingOption,
                  cmbPollingDisplayField, SSPACSOptions, btnNew, btnSave, btnDelete, btnExit,
                  lvwConfigs, txtDescription});
  });
}

TEST_F(SettingsKeyboardTest, TheDefaultConfigurationOpensWithTheFocusWhereTheWheelChangesNothing) {
  addConsistent(1, L"Default", L"pacs_type = 1");
  edit([](HWND window) {
    awaitFocus(window, lvwConfigs);
    SendMessageW(focusOf(window), WM_MOUSEWHEEL, MAKEWPARAM(0, -WHEEL_DELTA), 0);
    EXPECT_EQ(position(window, cmbVendorType), 1);
    EXPECT_EQ(list_view::selectedRow(rows(window)), 0);
  });
  EXPECT_TRUE(messages.empty());
}

TEST_F(SettingsKeyboardTest, MnemonicsSelectTheTabsAndTheirFirstFields) {
  addConsistent(1, L"Default", L"bidirectional = 1, flag9 = 10, flag16 = 1");
  edit([](HWND window) {
    const struct {
      wchar_t letter;
      int tab;
      Control first;
    } cases[] = {{L'q', 1, txtRequestFileName},
                 {L'r', 2, chkResponseEnabled},
                 {L'c', 3, chkEnableContextPolling},
                 {L'l', 4, chkCloseDictation},
                 {L'g', 0, cmbVendorType}};
    for (const auto& each : cases) {
      pressMnemonic(window, each.letter);
      awaitFocus(window, each.first);
      EXPECT_EQ(currentTab(window), each.tab);
    }
  });
}

TEST_F(SettingsKeyboardTest, MnemonicsPressTheButtons) {
  makeSite();
  edit([this](HWND window) {
    fill(window, txtDescription, L"Fifth");
    pressMnemonic(window, L's');
    waitUntil([&] { return list_view::cell(rows(window), 1, 1) == L"5 - Fifth"; }, "the save");
    pressMnemonic(window, L'n');
    waitUntil([&] { return text(window, txtDescription).empty(); }, "the new configuration");
    pressMnemonic(window, L'e');
    waitUntil([] { return !isShown(kSettingsTitle); }, "the exit");
  });
  EXPECT_TRUE(messages.empty());
  EXPECT_EQ(stored(5, L"description"), L"Fifth");
}

TEST_F(SettingsKeyboardTest, EscIsTheExitWithItsQuestion) {
  makeSite();
  edit([this](HWND window) {
    fill(window, txtDescription, L"Fifth");
    answers = {system::Answer::Yes};
    pressKey(window, VK_ESCAPE);
    waitUntil([] { return !isShown(kSettingsTitle); }, "the exit");
  });
  EXPECT_EQ(messages.size(), 1U);
  EXPECT_EQ(stored(5, L"description"), L"Fifth");
}

TEST_F(SettingsKeyboardTest, EnterInAFieldSavesNothing) {
  makeSite();
  edit([this](HWND window) {
    fill(window, txtDescription, L"Fifth");
    pressKey(window, VK_RETURN);
    pressKey(window, VK_TAB);
    awaitFocus(window, cmbVendorType);
    EXPECT_EQ(stored(5, L"description"), L"Five");
    EXPECT_TRUE(isShown(kSettingsTitle));
  });
}

TEST_F(SettingsKeyboardTest, ArrowsInTheListShowTheNextConfiguration) {
  makeSite();
  edit([](HWND window) {
    press(window, btnNew);
    pickRow(window, 0);
    SendMessageW(window, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(rows(window)), TRUE);
    pressKey(window, VK_DOWN);
    waitUntil([&] { return text(window, txtDescription) == L"Five"; }, "the next row");
    pressKey(window, VK_END);
    waitUntil([&] { return text(window, txtDescription) == L"Nine"; }, "the last row");
  });
}

TEST_F(SettingsKeyboardTest, TheFocusLeavesAFieldThatARuleDisables) {
  makeSite();
  edit([](HWND window) {
    pickCode(window, cmbVendorType, 1);
    turnTo(window, 1);
    SendMessageW(window, WM_NEXTDLGCTL,
                 reinterpret_cast<WPARAM>(control(window, txtRequestFileName)), TRUE);
    pickCode(window, cmbVendorType, 8);
    awaitRules(
        window, [&] { return !enabled(window, txtRequestFileName); }, "the rules are applied");
    EXPECT_NE(focusOf(window), control(window, txtRequestFileName));
    EXPECT_TRUE(IsWindowEnabled(focusOf(window)));
  });
}

TEST_F(SettingsKeyboardTest, AClickOnATabTakesTheFocusOutOfTheHiddenPage) {
  makeSite();
  edit([](HWND window) {
    const HWND tabs = control(window, SSPACSOptions);
    SendMessageW(window, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(control(window, txtPort)), TRUE);
    // Windows' tab control reports a click like this and does not take the focus.
    SendMessageW(tabs, TCM_SETCURSEL, 1, 0);
    NMHDR report{tabs, IDC_frmPACSSettings_SSPACSOptions, TCN_SELCHANGE};
    SendMessageW(window, WM_NOTIFY, report.idFrom, reinterpret_cast<LPARAM>(&report));
    EXPECT_EQ(focusOf(window), tabs);
    EXPECT_TRUE(IsWindowVisible(control(window, txtRequestFileName)));
    EXPECT_FALSE(IsWindowVisible(control(window, txtPort)));
    walk(window, {btnNew});
  });
}

TEST_F(SettingsKeyboardTest, AClickOnATabLeavesTheFocusOutsideThePagesAlone) {
  makeSite();
  edit([](HWND window) {
    const HWND tabs = control(window, SSPACSOptions);
    SendMessageW(window, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(rows(window)), TRUE);
    SendMessageW(tabs, TCM_SETCURSEL, 1, 0);
    NMHDR report{tabs, IDC_frmPACSSettings_SSPACSOptions, TCN_SELCHANGE};
    SendMessageW(window, WM_NOTIFY, report.idFrom, reinterpret_cast<LPARAM>(&report));
    EXPECT_EQ(focusOf(window), rows(window));
  });
}

TEST_F(SettingsKeyboardTest, TheAccessionFieldsAreTickedWithTheKeys) {
  addConsistent(1, L"Default", L"string3 = 'Visit ID'");
  edit([](HWND window) {
    turnTo(window, 3);
    const HWND list = control(window, cmpAccessionFields);
    const auto dropped = [&] { return SendMessageW(list, CB_GETDROPPEDSTATE, 0, 0) != 0; };
    SendMessageW(window, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(list), TRUE);
    EXPECT_EQ(textOf(list), L"Visit ID");
    pressKey(window, VK_F4);
    waitUntil(dropped, "F4 opens the list");
    pressKey(window, VK_DOWN);
    pressKey(window, VK_SPACE);
    waitUntil([&] { return textOf(list) == L"Account, Visit ID"; }, "a tick");
    EXPECT_TRUE(dropped());
    pressKey(window, VK_DOWN);
    pressKey(window, VK_SPACE);
    waitUntil([&] { return textOf(list) == L"Account, Department, Visit ID"; }, "another tick");
    pressKey(window, VK_SPACE);
    waitUntil([&] { return textOf(list) == L"Account, Visit ID"; }, "no tick");
    pressKey(window, VK_RETURN);
    waitUntil([&] { return !dropped(); }, "Enter closes the list");
    pressKey(window, VK_SPACE);
    waitUntil(dropped, "the blank opens the list");
    pressKey(window, VK_ESCAPE);
    waitUntil([&] { return !dropped(); }, "Esc closes the list");
    EXPECT_TRUE(isShown(kSettingsTitle));
    press(window, btnSave);
  });
  EXPECT_EQ(stored(1, L"string3"), L"Account,Visit ID");
}

TEST_F(SettingsKeyboardTest, TheAccessionFieldsAreTickedWithTheMouse) {
  addConsistent(1, L"Default");
  edit([](HWND window) {
    turnTo(window, 3);
    const HWND combo = control(window, cmpAccessionFields);
    COMBOBOXINFO info{};
    info.cbSize = sizeof(info);
    GetComboBoxInfo(combo, &info);
    SendMessageW(combo, CB_SHOWDROPDOWN, TRUE, 0);
    for (const WPARAM entry : {0, 2}) {
      RECT place{};
      SendMessageW(info.hwndList, LB_GETITEMRECT, entry, reinterpret_cast<LPARAM>(&place));
      const LPARAM at = MAKELPARAM(place.left + 5, (place.top + place.bottom) / 2);
      SendMessageW(info.hwndList, WM_LBUTTONDOWN, MK_LBUTTON, at);
      SendMessageW(info.hwndList, WM_LBUTTONUP, 0, at);
    }
    EXPECT_EQ(textOf(combo), L"Accession ID, Department");
    EXPECT_NE(SendMessageW(combo, CB_GETDROPPEDSTATE, 0, 0), 0);
    SendMessageW(combo, CB_SHOWDROPDOWN, FALSE, 0);
    press(window, btnSave);
  });
  EXPECT_EQ(stored(1, L"string3"), L"Accession ID,Department");
}

}  // namespace
}  // namespace tlpacscfg::test
