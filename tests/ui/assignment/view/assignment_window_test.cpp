#include <windows.h>
#include <commctrl.h>

#include "ui/settings/view/settings_fixture.h"
#include "ui/win32/form.h"

namespace tlpacscfg::test {
namespace {

using Texts = std::vector<std::wstring>;

constexpr const wchar_t* kDialogTitle = L"Workstation Setting";

class AssignmentTest : public SettingsTest {
 protected:
  void assignWhile(const std::function<void(HWND list)>& script) {
    initialise();
    showWhile([&](HWND list) {
      choose(list, IDC_frmPACSList_cboPCList, 2);
      script(list);
      click(list, IDC_frmPACSList_btnOk);
    });
  }

  static HWND open(HWND list) {
    click(list, IDC_frmPACSList_cmdEditWorkstation);
    return windowNamed(kDialogTitle);
  }
  static void ok(HWND dialog) {
    SendMessageW(controlOf(dialog, IDC_frmWorkstationSettings_cmdOK), BM_CLICK, 0, 0);
  }
  static HWND combo(HWND dialog) {
    return controlOf(dialog, IDC_frmWorkstationSettings_cmbPACSConfig);
  }
  static int chosen(HWND dialog) {
    return static_cast<int>(SendMessageW(combo(dialog), CB_GETCURSEL, 0, 0));
  }
  static HWND workstations(HWND list) { return controlOf(list, IDC_frmPACSList_lvwPACSList); }

  std::wstring assigned(const std::wstring& name) {
    return site
        .value(L"select key_value from System_workstation_cfg where pc_name = '" + name + L"'")
        .value_or(L"<null>");
  }
};

TEST_F(AssignmentTest, OffersNoneAndEveryConfigurationWithItsIdentifier) {
  makeSite();
  assignWhile([](HWND list) {
    const HWND dialog = open(list);
    EXPECT_EQ(entriesOf(combo(dialog)),
              (Texts{L"<None>", L"1 - Default", L"5 - Five", L"9 - Nine"}));
    const int codes[] = {0, 1, 5, 9};
    for (WPARAM i = 0; i < 4; ++i) {
      EXPECT_EQ(SendMessageW(combo(dialog), CB_GETITEMDATA, i, 0), codes[i]);
    }
    EXPECT_EQ(chosen(dialog), 2);
    EXPECT_EQ(textOf(controlOf(dialog, IDC_frmWorkstationSettings_lblWorkstation)), kComputer);
    EXPECT_EQ(textOf(controlOf(dialog, IDC_frmWorkstationSettings_Label1)), L"Configuration");
    const HWND button = controlOf(dialog, IDC_frmWorkstationSettings_cmdOK);
    EXPECT_EQ(textOf(button), L"&OK");
    BUTTON_IMAGELIST image{};
    SendMessageW(button, BCM_GETIMAGELIST, 0, reinterpret_cast<LPARAM>(&image));
    EXPECT_NE(image.himl, nullptr);
  });
}

TEST_F(AssignmentTest, IsTopmostAndOwnedByTheList) {
  makeSite();
  assignWhile([](HWND list) {
    const HWND dialog = open(list);
    EXPECT_NE(GetWindowLongW(dialog, GWL_EXSTYLE) & WS_EX_TOPMOST, 0);
    EXPECT_EQ(GetWindow(dialog, GW_OWNER), list);
    EXPECT_TRUE(IsWindowEnabled(list));
  });
}

TEST_F(AssignmentTest, TheChoiceShowsInTheListAndIsStoredWhenTheListCloses) {
  makeSite();
  addWorkstation(L"READ-02");
  assignWhile([this](HWND list) {
    list_view::selectRow(workstations(list), 1);
    const HWND dialog = open(list);
    EXPECT_EQ(chosen(dialog), 0);
    choose(dialog, IDC_frmWorkstationSettings_cmbPACSConfig, 3);
    ok(dialog);
    EXPECT_FALSE(isShown(kDialogTitle));
    EXPECT_EQ(list_view::cell(workstations(list), 1, 2), L"9 - Nine");
    EXPECT_EQ(list_view::cell(workstations(list), 1, 4), L"9");
    EXPECT_EQ(list_view::selectedRow(workstations(list)), 1);
    EXPECT_EQ(site.value(L"select count(*) from System_workstation_cfg where pc_name = 'READ-02'"),
              L"0");
  });
  EXPECT_EQ(assigned(L"READ-02"), L"9");
  EXPECT_EQ(assigned(kComputer), L"5");
}

TEST_F(AssignmentTest, AConfigurationThatIsGoneShowsNoEntryAndCannotBeConfirmed) {
  makeSite();
  site.run(L"update System_workstation_cfg set key_value = '7'");
  assignWhile([this](HWND list) {
    const HWND dialog = open(list);
    EXPECT_EQ(chosen(dialog), CB_ERR);
    ok(dialog);
    expectPlainBox(L"Run-time error '381':\r\nInvalid property array index");
    EXPECT_TRUE(isShown(kDialogTitle));
    EXPECT_EQ(list_view::cell(workstations(list), 0, 4), L"7");
  });
  EXPECT_EQ(assigned(kComputer), L"7");
}

TEST_F(AssignmentTest, OneDialogServesEveryWorkstation) {
  makeSite();
  addWorkstation(L"READ-02");
  assignWhile([](HWND list) {
    const HWND dialog = open(list);
    choose(dialog, IDC_frmWorkstationSettings_cmbPACSConfig, 3);
    list_view::doubleClickRow(workstations(list), 1, 1);
    EXPECT_EQ(windowNamed(kDialogTitle), dialog);
    EXPECT_EQ(textOf(controlOf(dialog, IDC_frmWorkstationSettings_lblWorkstation)), L"READ-02");
    EXPECT_EQ(chosen(dialog), 0);
  });
  EXPECT_EQ(assigned(kComputer), L"5");
}

TEST_F(AssignmentTest, TheClosingBoxAndEscChangeNothing) {
  makeSite();
  assignWhile([](HWND list) {
    HWND dialog = open(list);
    choose(dialog, IDC_frmWorkstationSettings_cmbPACSConfig, 0);
    SendMessageW(dialog, WM_CLOSE, 0, 0);
    EXPECT_FALSE(isShown(kDialogTitle));
    dialog = open(list);
    EXPECT_EQ(chosen(dialog), 2);
    choose(dialog, IDC_frmWorkstationSettings_cmbPACSConfig, 0);
    pressKey(dialog, VK_ESCAPE);
    waitUntil([] { return !isShown(kDialogTitle); }, "Esc closes the dialog");
  });
  EXPECT_EQ(assigned(kComputer), L"5");
}

TEST_F(AssignmentTest, KeysChooseAndConfirm) {
  makeSite();
  assignWhile([](HWND list) {
    const HWND dialog = open(list);
    EXPECT_EQ(focusOf(dialog), combo(dialog));
    pressKey(dialog, VK_DOWN);
    waitUntil([&] { return chosen(dialog) == 3; }, "the next entry");
    pressKey(dialog, VK_RETURN);
    waitUntil([] { return !isShown(kDialogTitle); }, "Enter confirms");
  });
  EXPECT_EQ(assigned(kComputer), L"9");
}

TEST_F(AssignmentTest, TabMovesBetweenTheChoiceAndTheButton) {
  makeSite();
  assignWhile([](HWND list) {
    const HWND dialog = open(list);
    for (const int id :
         {IDC_frmWorkstationSettings_cmdOK, IDC_frmWorkstationSettings_cmbPACSConfig}) {
      pressKey(dialog, VK_TAB);
      waitUntil([&] { return focusOf(dialog) == controlOf(dialog, id); }, "focus moves on");
    }
    ok(dialog);
  });
}

TEST_F(AssignmentTest, TooltipsSayWhatTheControlsAreFor) {
  makeSite();
  assignWhile([](HWND list) {
    const HWND dialog = open(list);
    EXPECT_EQ(tooltipOf(combo(dialog)),
              L"A list of configurations that can be assigned to the workstation");
    EXPECT_EQ(tooltipOf(controlOf(dialog, IDC_frmWorkstationSettings_cmdOK)),
              L"Save changes and exit");
    ok(dialog);
  });
}

TEST_F(AssignmentTest, AWorkstationWithAnAmpersandIsFoundByItsName) {
  addConsistent(1, L"Default & more");
  addWorkstation(L"A&B");
  assignWhile([](HWND list) {
    const HWND dialog = open(list);
    EXPECT_EQ(textOf(controlOf(dialog, IDC_frmWorkstationSettings_lblWorkstation)), L"A&B");
    choose(dialog, IDC_frmWorkstationSettings_cmbPACSConfig, 1);
    ok(dialog);
    EXPECT_EQ(list_view::cell(workstations(list), 0, 2), L"1 - Default & more");
  });
  EXPECT_EQ(assigned(L"A&B"), L"1");
}

}  // namespace
}  // namespace tlpacscfg::test
