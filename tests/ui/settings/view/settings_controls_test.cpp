#include <windows.h>
#include <commctrl.h>

#include <set>

#include "harness/scratch.h"
#include "support/text.h"
#include "ui/layout.h"
#include "ui/settings/values/settings_expected.h"
#include "ui/settings/view/settings_fixture.h"

namespace tlpacscfg::test {
namespace {

using Texts = std::vector<std::wstring>;

class SettingsControlsTest : public SettingsTest {
 protected:
  static const ControlDesign& named(std::wstring_view name) {
    for (const ControlDesign& each : controls()) {
      if (name == each.name) return each;
    }
    throw std::runtime_error("no control " + toUtf8(name));
  }

  static std::wstring classOf(HWND window) {
    std::wstring name(100, L'\0');
    name.resize(static_cast<std::size_t>(GetClassNameW(window, name.data(), 100)));
    return name;
  }

  static const wchar_t* classFor(Kind kind) {
    switch (kind) {
      case Kind::Label:
      case Kind::Heading:
      case Kind::Panel:
        return WC_STATICW;
      case Kind::Text:
        return WC_EDITW;
      case Kind::Check:
      case Kind::Option:
      case Kind::Button:
        return WC_BUTTONW;
      case Kind::List:
      case Kind::TickList:
        return WC_COMBOBOXW;
      case Kind::ListView:
        return WC_LISTVIEWW;
      case Kind::Tabs:
        return WC_TABCONTROLW;
    }
    return L"";
  }
};

TEST(ControlIdsTest, EveryControlHasTheResourceIdOfItsName) {
  const std::string resources = readBytes(sourcePath("src/ui/resource.h"));
  for (const ControlDesign& each : controls()) {
    const std::string definition = "#define IDC_frmPACSSettings_" + toUtf8(each.name) + " " +
                                   std::to_string(idOf(each.control)) + "\n";
    EXPECT_NE(resources.find(definition), std::string::npos) << definition;
  }
}

TEST_F(SettingsControlsTest, EveryControlIsOnItsPageWithItsClassCaptionAndTooltip) {
  makeSite();
  edit([](HWND window) {
    std::set<HWND> pagesSeen;
    for (const ExpectedControl& expected : kExpectedControls) {
      SCOPED_TRACE(toUtf8(expected.name));
      const ControlDesign& each = named(expected.name);
      const HWND control = controlOf(window, idOf(each.control));
      EXPECT_EQ(classOf(control), classFor(expected.kind));
      EXPECT_EQ(GetParent(control) == window, expected.page == Page::Window);
      const bool captioned = expected.kind == Kind::Label || expected.kind == Kind::Heading ||
                             expected.kind == Kind::Check || expected.kind == Kind::Option ||
                             expected.kind == Kind::Button;
      if (captioned) {
        EXPECT_EQ(textOf(control), expected.text);
      }
      EXPECT_EQ(tooltipOf(control), expected.tooltip);
      pagesSeen.insert(GetParent(control));
    }
    EXPECT_EQ(pagesSeen.size(), 6U);
  });
}

TEST_F(SettingsControlsTest, TheTooltipsAreDestroyedWithTheWindow) {
  makeSite();
  initialise();
  showWhile([](HWND list) {
    const std::size_t before = tooltipWindowsBeside(list).size();
    const HWND window = openSettings(list);
    EXPECT_EQ(tooltipWindowsBeside(list).size(), before + 1);
    closeSettings(window);
    EXPECT_EQ(tooltipWindowsBeside(list).size(), before);
    click(list, IDC_frmPACSList_btnOk);
  });
}

TEST_F(SettingsControlsTest, EveryListHasItsEntriesAndItemData) {
  makePrompts({L"b.xml"});
  makeSite();
  edit([](HWND window) {
    for (const ExpectedList& expected : expectedLists()) {
      SCOPED_TRACE(toUtf8(expected.control));
      const ControlDesign& each = named(expected.control);
      const HWND list = controlOf(window, idOf(each.control));
      Texts texts;
      for (const ExpectedEntry& entry : expected.entries) texts.emplace_back(entry.text);
      EXPECT_EQ(entriesOf(list), texts);
      if (each.kind == Kind::TickList) continue;
      for (std::size_t i = 0; i < expected.entries.size(); ++i) {
        EXPECT_EQ(SendMessageW(list, CB_GETITEMDATA, i, 0), expected.entries[i].code);
      }
    }
  });
}

TEST_F(SettingsControlsTest, TheTabsHaveTheirCaptions) {
  makeSite();
  edit([](HWND window) {
    const HWND tabs = control(window, Control::SSPACSOptions);
    EXPECT_EQ(SendMessageW(tabs, TCM_GETITEMCOUNT, 0, 0), 5);
    for (WPARAM i = 0; i < 5; ++i) {
      std::wstring text(100, L'\0');
      TCITEMW item{};
      item.mask = TCIF_TEXT;
      item.pszText = text.data();
      item.cchTextMax = 100;
      SendMessageW(tabs, TCM_GETITEMW, i, reinterpret_cast<LPARAM>(&item));
      EXPECT_EQ(std::wstring(item.pszText), kExpectedTabs[i]);
    }
    EXPECT_EQ(currentTab(window), 0);
  });
}

TEST_F(SettingsControlsTest, TheListShowsAConfigurationInARowWithItsSubItems) {
  makeSite();
  edit([](HWND window) {
    EXPECT_EQ(list_view::header(rows(window), 0), L"Config ID");
    EXPECT_EQ(list_view::header(rows(window), 1), L"Configuration");
    EXPECT_EQ(list_view::column(rows(window), 0), (Texts{L"1", L"5", L"9"}));
    EXPECT_EQ(list_view::column(rows(window), 1),
              (Texts{L"1 - Default", L"5 - Five", L"9 - Nine"}));
    EXPECT_EQ(list_view::column(rows(window), 2), (Texts{L"1", L"5", L"9"}));
  });
}

TEST_F(SettingsControlsTest, TheConfigurationColumnFillsTheListUpToItsScrollBar) {
  makeSite();
  edit([this](HWND window) {
    const auto clientWidth = [&] {
      RECT client{};
      GetClientRect(rows(window), &client);
      return static_cast<int>(client.right);
    };
    const int withoutScrollBar = clientWidth();
    EXPECT_EQ(list_view::columnWidth(rows(window), 1), withoutScrollBar);
    const int shown = static_cast<int>(SendMessageW(rows(window), LVM_GETCOUNTPERPAGE, 0, 0));
    for (int i = list_view::rowCount(rows(window)); i <= shown; ++i) {
      press(window, Control::btnNew);
      fill(window, Control::txtDescription, L"Another " + std::to_wstring(i));
      press(window, Control::btnSave);
    }
    EXPECT_EQ(list_view::rowCount(rows(window)), shown + 1);
    EXPECT_LT(clientWidth(), withoutScrollBar);
    EXPECT_EQ(list_view::columnWidth(rows(window), 1), clientWidth());
    answers = {system::Answer::Yes};
    press(window, Control::btnDelete);
    EXPECT_EQ(clientWidth(), withoutScrollBar);
    EXPECT_EQ(list_view::columnWidth(rows(window), 1), withoutScrollBar);
  });
}

TEST_F(SettingsControlsTest, OnlyTheControlsOfTheSelectedTabTakeTabStops) {
  makeSite();
  edit([](HWND window) {
    for (int tab = 0; tab < 5; ++tab) {
      turnTo(window, tab);
      for (const ControlDesign& each : controls()) {
        const bool takesKeys = each.kind == Kind::Text || each.kind == Kind::Check ||
                               each.kind == Kind::List || each.kind == Kind::TickList;
        if (each.page == Page::Window || !takesKeys) continue;
        const LONG style = GetWindowLongW(controlOf(window, idOf(each.control)), GWL_STYLE);
        EXPECT_EQ((style & WS_TABSTOP) != 0, static_cast<int>(each.page) == tab + 1)
            << toUtf8(each.name) << " on tab " << tab;
      }
    }
  });
}

TEST_F(SettingsControlsTest, OneOptionOfAGroupTakesTheTabStop) {
  addConsistent(1, L"Default", L"user_mapping_option = 6, flag9 = 20, flag11 = 2");
  edit([](HWND window) {
    const auto stops = [&](Control option) {
      return (GetWindowLongW(control(window, option), GWL_STYLE) & WS_TABSTOP) != 0;
    };
    turnTo(window, 1);
    EXPECT_FALSE(stops(Control::radLogonMapPACS_0));
    EXPECT_TRUE(stops(Control::radLogonMapPACS_1));
    EXPECT_FALSE(stops(Control::radLogonMapCorvane_0));
    EXPECT_TRUE(stops(Control::radLogonMapCorvane_2));
    turnTo(window, 3);
    EXPECT_FALSE(stops(Control::radLogonMapPACS_1));
    EXPECT_TRUE(stops(Control::optMultiAccessionHandlingOption_2));
    EXPECT_FALSE(stops(Control::optMultiAccessionHandlingOption_0));
  });
}

TEST_F(SettingsControlsTest, TheTabStopOfAGroupFollowsTheOptionThatIsClicked) {
  addConsistent(1, L"Default", L"user_mapping_option = 1, pacs_request_password = 2");
  edit([](HWND window) {
    const auto expectStopAt = [&](Control option) {
      for (const Control each : {Control::radLogonMapCorvane_0, Control::radLogonMapCorvane_1,
                                 Control::radLogonMapCorvane_2}) {
        const LONG style = GetWindowLongW(control(window, each), GWL_STYLE);
        EXPECT_EQ((style & WS_TABSTOP) != 0, each == option) << toUtf8(design(each).name);
      }
    };
    turnTo(window, 1);
    expectStopAt(Control::radLogonMapCorvane_0);
    press(window, Control::radLogonMapCorvane_2);
    expectStopAt(Control::radLogonMapCorvane_2);
    turnTo(window, 2);
    turnTo(window, 1);
    expectStopAt(Control::radLogonMapCorvane_2);
  });
}

TEST_F(SettingsControlsTest, LabelsAndFieldsOfAllPagesStandInTheSameColumns) {
  makeSite();
  edit([](HWND window) {
    std::set<LONG> lefts;
    std::set<LONG> rights;
    for (const ControlDesign& each : controls()) {
      if (each.kind != Kind::List && each.kind != Kind::Text) continue;
      RECT place = placeOf(controlOf(window, idOf(each.control)));
      lefts.insert(place.left);
      if (each.kind == Kind::List) rights.insert(place.right);
    }
    EXPECT_EQ(lefts.size(), 1U);
    EXPECT_EQ(rights.size(), 1U);
  });
}

}  // namespace
}  // namespace tlpacscfg::test
