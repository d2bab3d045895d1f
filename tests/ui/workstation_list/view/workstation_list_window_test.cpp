#include <windows.h>
#include <commctrl.h>

#include "data/direct_connections.h"
#include "ui/show_form/show_form.h"
#include "ui/win32/form.h"
#include "ui/win32/module.h"
#include "ui/window_fixture.h"
#include "ui/workstation_list/view/workstation_list_window.h"

namespace tlpacscfg::test {
namespace {

using Texts = std::vector<std::wstring>;

class ListWindowTest : public WindowTest {
 protected:
  static HWND list(HWND window) { return controlOf(window, IDC_frmPACSList_lvwPACSList); }
  static void close(HWND window) { click(window, IDC_frmPACSList_btnOk); }
  static void showAll(HWND window) { choose(window, IDC_frmPACSList_cboPCList, 2); }

  void addWorkstations(int count) {
    for (int i = 1; i <= count; ++i) addWorkstation(L"PC-" + std::to_wstring(100 + i));
  }

  Texts row(HWND window, int index) {
    Texts texts;
    for (int column = 0; column < 5; ++column) {
      texts.push_back(list_view::cell(list(window), index, column));
    }
    return texts;
  }
};

TEST_F(ListWindowTest, OpensOnTheWorkstationsThatHaveAConfiguration) {
  addConfiguration(1, L"description = 'Default', request_filename = 'C:\\req.xml'");
  addWorkstation(L"PC-2", L"0");
  addWorkstation(L"PC-1");
  addWorkstation(L"PC-3");
  assign(L"PC-2", L"'1'");
  initialise();
  EXPECT_EQ(
      showWhile([&](HWND window) {
        EXPECT_EQ(entriesOf(controlOf(window, IDC_frmPACSList_cboPCList)),
                  (Texts{L"All workstations with a Corvane Expert Integration configuration "
                         L"assigned",
                         L"All Corvane Expert workstations", L"All workstations"}));
        EXPECT_EQ(list_view::rowCount(list(window)), 1);
        EXPECT_EQ(row(window, 0), (Texts{L"1", L"PC-2", L"1 - Default", L"C:\\req.xml", L"1"}));
        close(window);
      }),
      0);
}

TEST_F(ListWindowTest, TooltipsSayWhatTheButtonsDo) {
  initialise();
  showWhile([&](HWND window) {
    const std::pair<int, const wchar_t*> tooltips[] = {
        {IDC_frmPACSList_btnOk, L"Close the Workstation List"},
        {IDC_frmPACSList_cmdEditConfig, L"Edit, delete or add configurations"},
        {IDC_frmPACSList_cmdEditWorkstation, L"Assign a configuration to a workstation"}};
    for (const auto& [id, tooltip] : tooltips) {
      EXPECT_EQ(tooltipOf(controlOf(window, id)), tooltip);
    }
    close(window);
  });
}

TEST_F(ListWindowTest, HasFiveColumnsOfWhichTwoAreHidden) {
  initialise();
  showWhile([&](HWND window) {
    const Texts headers = {L"Workstation", L"Workstation", L"Configuration",
                           L"Request File Location", L"ConfigID"};
    const int twips[] = {0, 1440, 2200, 3500, 0};
    for (int column = 0; column < 5; ++column) {
      EXPECT_EQ(list_view::header(list(window), column), headers[static_cast<std::size_t>(column)]);
      EXPECT_EQ(list_view::columnWidth(list(window), column),
                win32::pixelsFromTwips(twips[column]));
    }
    close(window);
  });
}

TEST_F(ListWindowTest, TwentyFourRowsLeaveTheConfigurationColumnAsDesigned) {
  addWorkstations(24);
  initialise();
  showWhile([&](HWND window) {
    showAll(window);
    EXPECT_EQ(list_view::columnWidth(list(window), 2), win32::pixelsFromTwips(2200));
    EXPECT_EQ(SendMessageW(list(window), LVM_GETCOUNTPERPAGE, 0, 0), 24);
    close(window);
  });
}

TEST_F(ListWindowTest, TwentyFiveRowsNarrowTheConfigurationColumnPermanently) {
  addWorkstations(25);
  initialise();
  showWhile([&](HWND window) {
    showAll(window);
    EXPECT_EQ(list_view::columnWidth(list(window), 2), win32::pixelsFromTwips(1950));
    choose(window, IDC_frmPACSList_cboPCList, 0);
    EXPECT_EQ(list_view::rowCount(list(window)), 0);
    EXPECT_EQ(list_view::columnWidth(list(window), 2), win32::pixelsFromTwips(1950));
    close(window);
  });
}

TEST_F(ListWindowTest, AfterAClickBesideTheRowsTheSelectedWorkstationIsStillTheOneToEdit) {
  for (const wchar_t* name : {L"PC-1", L"PC-2"}) addWorkstation(name);
  initialise();
  showWhile([&](HWND window) {
    showAll(window);
    list_view::clickRow(list(window), 1, 1);
    list_view::clickBelowRows(list(window));
    EXPECT_EQ(list_view::selectedRow(list(window)), 1);
    list_view::rightClickBelowRows(list(window));
    EXPECT_EQ(list_view::selectedRow(list(window)), 1);
    click(window, IDC_frmPACSList_cmdEditWorkstation);
    const HWND dialog = windowNamed(L"Workstation Setting");
    EXPECT_EQ(textOf(controlOf(dialog, IDC_frmWorkstationSettings_lblWorkstation)), L"PC-2");
    SendMessageW(dialog, WM_CLOSE, 0, 0);
    close(window);
  });
}

TEST_F(ListWindowTest, AnEmptyListDisablesOnlyTheWorkstationEditor) {
  addWorkstation(L"PC-1");
  initialise();
  showWhile([&](HWND window) {
    EXPECT_FALSE(IsWindowEnabled(controlOf(window, IDC_frmPACSList_cmdEditWorkstation)));
    EXPECT_TRUE(IsWindowEnabled(controlOf(window, IDC_frmPACSList_cmdEditConfig)));
    showAll(window);
    EXPECT_TRUE(IsWindowEnabled(controlOf(window, IDC_frmPACSList_cmdEditWorkstation)));
    close(window);
  });
}

TEST_F(ListWindowTest, HasItsCaptionsAndStaysTopmost) {
  initialise();
  showWhile([&](HWND window) {
    EXPECT_EQ(textOf(controlOf(window, IDC_frmPACSList_Label1)), L"Display:");
    EXPECT_EQ(textOf(controlOf(window, IDC_frmPACSList_cmdEditConfig)), L"Edit &Configuration");
    EXPECT_EQ(textOf(controlOf(window, IDC_frmPACSList_cmdEditWorkstation)), L"Edit &Workstation");
    EXPECT_EQ(textOf(controlOf(window, IDC_frmPACSList_btnOk)), L"&OK");
    EXPECT_NE(GetWindowLongW(window, GWL_EXSTYLE) & WS_EX_TOPMOST, 0);
    close(window);
  });
}

TEST_F(ListWindowTest, WithoutADatabaseNoWindowAppearsAndTheCodeIsOne) {
  logOn(7);
  EXPECT_EQ(ShowForm(config_), 1);
  EXPECT_FALSE(config_->ConfigLoaded);
  EXPECT_EQ(log(), debugLine(7, L"[TLPACSCFG] Database connection test failed"));
}

TEST_F(ListWindowTest, TabWalksThroughTheControlsAndEnterCloses) {
  addWorkstation(L"PC-1");
  initialise();
  showWhile([&](HWND window) {
    showAll(window);
    EXPECT_EQ(focusOf(window), list(window));
    for (const int id :
         {IDC_frmPACSList_cmdEditConfig, IDC_frmPACSList_cmdEditWorkstation, IDC_frmPACSList_btnOk,
          IDC_frmPACSList_cboPCList, IDC_frmPACSList_lvwPACSList}) {
      pressKey(window, VK_TAB);
      waitUntil([&] { return focusOf(window) == controlOf(window, id); }, "focus moves on");
    }
    pressKey(window, VK_RETURN);
    waitUntil([] { return !isShown(kListTitle); }, "Enter closes the window");
  });
}

int g_ticks = 0;
void CALLBACK countTick(HWND, UINT, UINT_PTR, DWORD) { ++g_ticks; }

TEST_F(ListWindowTest, TheHostsMessagesAreProcessedMeanwhile) {
  initialise();
  g_ticks = 0;
  const UINT_PTR timer = SetTimer(nullptr, 0, 10, &countTick);
  showWhile([&](HWND window) {
    waitUntil([] { return g_ticks > 3; }, "the host's timer ticks");
    close(window);
  });
  KillTimer(nullptr, timer);
}

TEST_F(ListWindowTest, AFormIsLoadedUnderItsNameInAnyCase) {
  initialise();
  showWhile([&](HWND window) {
    EXPECT_TRUE(win32::IsFormLoaded(L"FRMPACSLIST"));
    EXPECT_FALSE(win32::IsFormLoaded(L"frmOther"));
    close(window);
  });
  EXPECT_FALSE(win32::IsFormLoaded(L"frmPACSList"));
}

TEST_F(ListWindowTest, ShowsAndSavesTheLargestSite) {
  site.run(
      L"with recursive n(i) as (select 1 union all select i + 1 from n where i < 32767) "
      L"insert into System_pc_names (pc_name, access_string, flag2) "
      L"select printf('PC-%05d', i), '', 1 from n");
  initialise();
  showWhile([&](HWND window) {
    showAll(window);
    EXPECT_EQ(list_view::rowCount(list(window)), 32767);
    list_view::clickHeader(list(window), 1);
    EXPECT_EQ(list_view::cell(list(window), 0, 1), L"PC-32767");
    close(window);
  });
  EXPECT_EQ(site.value(L"select count(*) from System_workstation_cfg"), L"32767");
}

TEST_F(ListWindowTest, GrowsWithTheWindowAndKeepsItsButtonsAtTheEdge) {
  addWorkstation(L"PC-1");
  initialise();
  showWhile([&](HWND window) {
    const auto placeOf = [&](int id) {
      RECT place{};
      GetWindowRect(controlOf(window, id), &place);
      MapWindowPoints(nullptr, window, reinterpret_cast<POINT*>(&place), 2);
      return place;
    };
    RECT frame{};
    GetWindowRect(window, &frame);
    const RECT listBefore = placeOf(IDC_frmPACSList_lvwPACSList);
    const RECT okBefore = placeOf(IDC_frmPACSList_btnOk);
    SetWindowPos(window, nullptr, 0, 0, frame.right - frame.left + 100,
                 frame.bottom - frame.top + 50, SWP_NOMOVE | SWP_NOZORDER);
    const RECT listAfter = placeOf(IDC_frmPACSList_lvwPACSList);
    const RECT okAfter = placeOf(IDC_frmPACSList_btnOk);
    EXPECT_EQ(listAfter.right - listBefore.right, 100);
    EXPECT_EQ(listAfter.bottom - listBefore.bottom, 50);
    EXPECT_EQ(okAfter.left - okBefore.left, 100);
    EXPECT_EQ(okAfter.top - okBefore.top, 50);
    EXPECT_EQ(list_view::columnWidth(list(window), 3), win32::pixelsFromTwips(3500) + 100);
    close(window);
  });
}

TEST_F(ListWindowTest, KeepsTheWidthsThatTheUserChoseWhenItsSizeChanges) {
  addWorkstation(L"PC-1");
  initialise();
  showWhile([&](HWND window) {
    const auto widen = [&](int pixels) {
      RECT frame{};
      GetWindowRect(window, &frame);
      SetWindowPos(window, nullptr, 0, 0, frame.right - frame.left + pixels,
                   frame.bottom - frame.top, SWP_NOMOVE | SWP_NOZORDER);
    };
    const int name = list_view::columnWidth(list(window), 1);
    const int file = list_view::columnWidth(list(window), 3);
    list_view::dragDivider(list(window), 3, 50);
    list_view::dragDivider(list(window), 1, 30);
    widen(60);
    EXPECT_EQ(list_view::columnWidth(list(window), 1), name + 30);
    EXPECT_EQ(list_view::columnWidth(list(window), 3), file + 50);
    widen(60);
    EXPECT_EQ(list_view::columnWidth(list(window), 3), file + 90);
    widen(-200);
    EXPECT_EQ(list_view::columnWidth(list(window), 1), name + 30);
    EXPECT_EQ(list_view::columnWidth(list(window), 3), file + 50);
    close(window);
  });
}

TEST_F(ListWindowTest, TheRunningNumberCannotBeRevealed) {
  initialise();
  showWhile([&](HWND window) {
    list_view::dragDivider(list(window), 0, 40);
    EXPECT_EQ(list_view::columnWidth(list(window), 0), 0);
    close(window);
  });
}

}  // namespace
}  // namespace tlpacscfg::test
