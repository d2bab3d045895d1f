#include "support/text.h"
#include "ui/settings/view/settings_fixture.h"

namespace tlpacscfg::test {
namespace {

using enum Control;

class SettingsRulesWindowTest : public SettingsTest {
 protected:
  static void awaitEnabled(HWND window, Control which, bool wanted) {
    awaitRules(
        window, [&] { return enabled(window, which) == wanted; },
        toUtf8(design(which).name) + (wanted ? " enabled" : " disabled"));
  }
};

TEST_F(SettingsRulesWindowTest, EveryGoverningControlAppliesItsRules) {
  makePrompts({L"a.xml"});
  makeSite();
  edit([](HWND window) {
    press(window, chkResponseEnabled);
    awaitEnabled(window, chkPaused, true);
    press(window, chkEnableContextPolling);
    awaitEnabled(window, cmbContextChangeOption, true);
    EXPECT_TRUE(ticked(window, optMultiAccessionHandlingOption_0));
    press(window, chkCloseDictation);
    awaitEnabled(window, txtCloseDictation, true);
    pick(window, cmbPollingOption, 1);
    awaitEnabled(window, cmbPollingAction, true);
    pick(window, cmbResponseType, 1);
    waitUntil([&] { return text(window, lblResponseFileName) == L"URL Address"; }, "the caption");
    pickCode(window, cmbVendorType, 8);
    awaitEnabled(window, txtRequestFileName, false);
  });
}

TEST_F(SettingsRulesWindowTest, ALabelIsDisabledTogetherWithItsField) {
  constexpr std::pair<Control, Control> kLabelled[] = {
      {lblDescription, txtDescription},
      {lblXMLType, cmbVendorType},
      {lblConfigurationFile, cmbXMLConfugrationFile},
      {lblPACSInsOvr, cmbStartPACS},
      {lblManualEntryTrigger, cmbManualEntry},
      {lblPolling, cmbPollingOption},
      {Label1, cmbPollingAction},
      {Label6, cmbPollingDisplayField},
      {labPort, txtPort},
      {lblRequestFileName, txtRequestFileName},
      {lblReqPassword, cmbRequestPassword},
      {lblResponseType, cmbResponseType},
      {lblResponseFileName, txtResponseFileName},
      {lblApplicableFields, txtApplicableFields},
      {lblResponsePassword, cmbResPassword},
      {Label5, cmbContextChangeOption},
      {lblContextChangeXML, txtContextXML},
      {Label8, optMultiAccessionHandlingOption_2},
      {Label7, cmpAccessionFields},
      {Label3, cmbContextUpdate},
      {Label9, txtCloseDictation},
      {Label10, cmbCloseDictationAction},
  };
  addConsistent(1, L"Default");
  edit([&](HWND window) {
    const auto expectPairs = [&] {
      for (const auto& [label, field] : kLabelled) {
        EXPECT_EQ(enabled(window, label), enabled(window, field)) << toUtf8(design(field).name);
      }
    };
    expectPairs();
    for (const Control label : {lblDescription, Label1, lblReqPassword, lblResponseFileName,
                                lblResponsePassword, Label5, Label8, Label9}) {
      EXPECT_FALSE(enabled(window, label)) << toUtf8(design(label).name);
    }
    press(window, chkResponseEnabled);
    press(window, chkEnableContextPolling);
    press(window, chkCloseDictation);
    pick(window, cmbPollingOption, 1);
    awaitEnabled(window, txtCloseDictation, true);
    expectPairs();
    for (const Control label :
         {Label1, lblResponseFileName, lblResponsePassword, Label5, Label8, Label9}) {
      EXPECT_TRUE(enabled(window, label)) << toUtf8(design(label).name);
    }
    // Neither belongs to one field.
    pickCode(window, cmbVendorType, 4);
    awaitEnabled(window, txtRequestFileName, false);
    expectPairs();
    for (const Control label : {lblMapsTo, lblConfig, lblAddressHint, lblHintApplicable}) {
      EXPECT_TRUE(enabled(window, label)) << toUtf8(design(label).name);
    }
  });
}

TEST_F(SettingsRulesWindowTest, TickingTheMappingSelectsTheFirstPairAtOnce) {
  makeSite();
  edit([](HWND window) {
    press(window, chkUserLogon);
    EXPECT_TRUE(ticked(window, radLogonMapPACS_0));
    EXPECT_TRUE(ticked(window, radLogonMapCorvane_0));
    EXPECT_TRUE(enabled(window, cmbRequestPassword));
    press(window, radLogonMapPACS_1);
    press(window, radLogonMapCorvane_2);
    EXPECT_FALSE(ticked(window, radLogonMapPACS_0));
    EXPECT_FALSE(ticked(window, radLogonMapCorvane_0));
  });
}

TEST_F(SettingsRulesWindowTest, ACommandSeesTheRulesOfAChangeMadeJustBefore) {
  addConsistent(1, L"Default", L"bidirectional = 1, response_for_paused_jobs = 1");
  edit([](HWND window) {
    press(window, chkResponseEnabled);
    press(window, btnSave);
  });
  EXPECT_EQ(stored(1, L"bidirectional"), L"0");
  EXPECT_EQ(stored(1, L"response_for_paused_jobs"), L"0");
}

}  // namespace
}  // namespace tlpacscfg::test
