#include <gmock/gmock.h>

#include <oleacc.h>

#include "ui/accessible_names.h"
#include "ui/settings/view/settings_fixture.h"

namespace tlpacscfg::test {
namespace {

using enum Control;
using ::testing::IsEmpty;

class SettingsNamesTest : public SettingsTest {
 protected:
  RecordedAnnotations annotations_;

  static HWND pageOf(HWND window, int tab) {
    constexpr Control kOnPages[] = {txtPort, cmbRequestPassword, cmbResponseType, Label4, Label9};
    return GetParent(control(window, kOnPages[tab]));
  }

  void expectNames(HWND window) {
    for (int tab = 0; tab < kTabs; ++tab) {
      turnTo(window, tab);
      EXPECT_THAT(
          nameProblems({factsOf(window, annotations_), factsOf(pageOf(window, tab), annotations_)}),
          IsEmpty())
          << "on tab " << tab;
    }
  }

  std::wstring nameOf(HWND window, Control which) {
    const HWND parent = GetParent(control(window, which));
    std::size_t place = 0;
    for (HWND each = GetWindow(parent, GW_CHILD); each != control(window, which);
         each = GetWindow(each, GW_HWNDNEXT)) {
      ++place;
    }
    return accessibleName(factsOf(parent, annotations_), place);
  }
};

TEST_F(SettingsNamesTest, EveryControlHasANameOfItsOwnInEveryResponseType) {
  makePrompts({L"a.xml"});
  addConsistent(1, L"Default", L"pacs_type = 7, bidirectional = 1, string1 = 'a.xml'");
  edit([this](HWND window) {
    for (int type = 0; type < 3; ++type) {
      pick(window, cmbResponseType, type);
      awaitRules(
          window, [&] { return visible(window, txtApplicableFields) == (type > 0); },
          "the rules are applied");
      expectNames(window);
    }
  });
}

TEST_F(SettingsNamesTest, NamesSayWhatTheCaptionsShow) {
  makeSite();
  edit([this](HWND window) {
    EXPECT_EQ(nameOf(window, lvwConfigs), L"Integration Configurations");
    EXPECT_EQ(nameOf(window, SSPACSOptions), L"Configuration Settings");
    EXPECT_EQ(nameOf(window, btnNew), L"New");
    EXPECT_EQ(nameOf(window, txtDescription), L"Description");
    EXPECT_EQ(nameOf(window, txtPausedStatus), L"Status To Be Sent: Paused Jobs");
    EXPECT_EQ(nameOf(window, SSPanel3), L"Corvane");
    EXPECT_EQ(nameOf(window, radLogonMapCorvane_0), L"Corvane User Name");
    EXPECT_EQ(nameOf(window, optMultiAccessionHandlingOption_0),
              L"Multiple Accession Context Change Handling: None (Multiple Accessions are not "
              L"supported in this configuration)");
    EXPECT_EQ(annotations_.roleOf(control(window, SSPanel2)), ROLE_SYSTEM_GROUPING);
  });
}

TEST_F(SettingsNamesTest, AnnotationsContainTheCaptionAndEndWithTheWindow) {
  makeSite();
  edit([this](HWND window) {
    EXPECT_EQ(annotations_.count(), 10U);
    for (const ControlDesign& each : controls()) {
      const std::wstring name = annotations_.nameOf(control(window, each.control));
      if (each.kind == Kind::Option) {
        EXPECT_TRUE(name.ends_with(each.text)) << toUtf8(each.name);
      }
    }
    closeSettings(window);
    EXPECT_EQ(annotations_.count(), 0U);
  });
}

TEST_F(SettingsNamesTest, TheSystemsLibraryTellsTheNamesOfTheFields) {
  makeSite();
  edit([this](HWND window) {
    for (const ControlDesign& each : controls()) {
      if (each.kind != Kind::Text) continue;
      EXPECT_EQ(toldName(control(window, each.control)), nameOf(window, each.control))
          << toUtf8(each.name);
    }
    EXPECT_EQ(toldName(control(window, txtNonPACS)), L"Status To Be Sent: Non-Integration Jobs");
  });
}

TEST_F(SettingsNamesTest, TheNameOfTheResponseFieldFollowsItsLabel) {
  addConsistent(1, L"Default", L"bidirectional = 1");
  edit([this](HWND window) {
    pick(window, cmbResponseType, 1);
    awaitRules(
        window, [&] { return text(window, lblResponseFileName) == L"URL Address"; },
        "the rules are applied");
    EXPECT_EQ(toldName(control(window, txtResponseFileName)), L"URL Address");
  });
}

}  // namespace
}  // namespace tlpacscfg::test
