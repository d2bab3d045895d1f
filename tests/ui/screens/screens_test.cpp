#include <gmock/gmock.h>

#include "support/text.h"
#include "ui/layout.h"
#include "ui/settings/view/settings_fixture.h"

/// What is seen of the windows at the resolution and on the screen that the program finds; also run
/// at others and in other languages of the system (on-screen).
namespace tlpacscfg::test {
namespace {

using enum Control;
using ::testing::IsEmpty;

bool isBroker(int format) { return format == 4 || format == 5; }
bool usesFile(int format) { return format == 7 || format == 9; }

RECT workArea() {
  RECT area{};
  SystemParametersInfoW(SPI_GETWORKAREA, 0, &area, 0);
  return area;
}

RECT clientOf(HWND window) {
  RECT client{};
  GetClientRect(window, &client);
  MapWindowPoints(window, nullptr, reinterpret_cast<POINT*>(&client), 2);
  return client;
}

class ScreensTest : public SettingsTest {
 protected:
  /// For a program that does not know of resolutions, every screen is at 100 %.
  ScreensTest() { SetProcessDPIAware(); }

  void makeFullSite() {
    makePrompts({L"a.xml"});
    addConsistent(1, L"Default", L"bidirectional = 1, string1 = 'a.xml'");
    addWorkstation(kComputer);
    assign(kComputer, L"'1'");
  }

  static HWND pageOf(HWND window, int tab) {
    constexpr Control kOnPages[] = {txtPort, cmbRequestPassword, cmbResponseType, Label4, Label9};
    return GetParent(control(window, kOnPages[tab]));
  }

  static void expectPages(HWND window, const std::string& state) {
    for (int tab = 0; tab < kTabs; ++tab) {
      EXPECT_THAT(layoutProblems(pageOf(window, tab)), IsEmpty()) << "tab " << tab << ", " << state;
    }
  }
};

TEST_F(ScreensTest, NothingIsClippedOrCoveredInAnyFormat) {
  makeFullSite();
  edit([](HWND window) {
    EXPECT_THAT(layoutProblemsOfScrolled(window), IsEmpty());
    for (const int format : {0, 1, 2, 3, 9, 7, 4, 5, 8}) {
      pickCode(window, cmbVendorType, static_cast<std::int16_t>(format));
      awaitRules(
          window,
          [&] {
            return enabled(window, cmbStartPACS) != isBroker(format) &&
                   visible(window, cmbXMLConfugrationFile) == usesFile(format);
          },
          "the rules of the format are applied");
      expectPages(window, "format " + std::to_string(format));
    }
  });
}

TEST_F(ScreensTest, NothingIsClippedOrCoveredInAnyResponseType) {
  makeFullSite();
  edit([](HWND window) {
    for (int type = 0; type < 3; ++type) {
      pick(window, cmbResponseType, type);
      awaitRules(
          window, [&] { return visible(window, txtApplicableFields) == (type > 0); },
          "the rules of the type are applied");
      expectPages(window, "response type " + std::to_string(type));
    }
    press(window, chkResponseEnabled);
    awaitRules(
        window, [&] { return !enabled(window, cmbResponseType); }, "responses are off");
    expectPages(window, "without responses");
  });
}

TEST_F(ScreensTest, EveryWindowIsWithinTheScreen) {
  makeFullSite();
  initialise();
  showWhile([](HWND list) {
    EXPECT_THAT(layoutProblems(list), IsEmpty());
    EXPECT_TRUE(contains(workArea(), placeOf(list)));
    const HWND settings = openSettings(list);
    EXPECT_TRUE(contains(workArea(), placeOf(settings)));
    if (GetDpiForSystem() <= 144) {
      // The whole width is seen, on a screen of 1366 pixels at least.
      EXPECT_EQ(GetWindowLongW(settings, GWL_STYLE) & WS_HSCROLL, 0);
    }
    closeSettings(settings);
    click(list, IDC_frmPACSList_cmdEditWorkstation);
    const HWND assignment = windowNamed(L"Workstation Setting");
    EXPECT_THAT(layoutProblems(assignment), IsEmpty());
    EXPECT_TRUE(contains(workArea(), placeOf(assignment)));
    click(list, IDC_frmPACSList_btnOk);
  });
}

TEST_F(ScreensTest, TheControlWithTheFocusIsAlwaysSeen) {
  makeFullSite();
  edit([](HWND window) {
    for (int tab = 0; tab < kTabs; ++tab) {
      turnTo(window, tab);
      const HWND first = focusOf(window);
      int steps = 0;
      do {
        const HWND before = focusOf(window);
        pressKey(window, VK_TAB);
        waitUntil([&] { return focusOf(window) != before; }, "the focus moves");
        const HWND focus = focusOf(window);
        // The list and the tabs are larger than a small screen.
        if (GetParent(focus) == window && GetDlgCtrlID(focus) >= idOf(SSPACSOptions)) continue;
        if (focus == rows(window)) continue;
        waitUntil([&] { return contains(clientOf(window), placeOf(focus)); },
                  "control " + std::to_string(GetDlgCtrlID(focus)) + " is seen");
      } while (focusOf(window) != first && ++steps < 100);
    }
  });
}

TEST_F(ScreensTest, TheWindowsAreNotMirroredAndKeepTheirEnglishTexts) {
  makeFullSite();
  initialise();
  SetProcessDefaultLayout(LAYOUT_RTL);
  showWhile([](HWND list) {
    const HWND settings = openSettings(list);
    for (const HWND window : {list, rows(settings), settings, pageOf(settings, 0)}) {
      EXPECT_EQ(GetWindowLongW(window, GWL_EXSTYLE) & WS_EX_LAYOUTRTL, 0);
    }
    EXPECT_EQ(text(settings, btnSave), L"&Save");
    EXPECT_EQ(text(settings, lblConfig), L"Integration Configurations");
    EXPECT_LT(placeOf(control(settings, labPort)).left, placeOf(control(settings, txtPort)).left);
    closeSettings(settings);
    click(list, IDC_frmPACSList_btnOk);
  });
  DWORD layout = 0;
  GetProcessDefaultLayout(&layout);
  EXPECT_EQ(layout, static_cast<DWORD>(LAYOUT_RTL));
  SetProcessDefaultLayout(0);
}

}  // namespace
}  // namespace tlpacscfg::test
