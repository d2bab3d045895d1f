#include "ui/settings/values/blank_form.h"

#include <gtest/gtest.h>

#include "ui/settings/values/settings_rules.h"

namespace tlpacscfg::test {
namespace {

using enum Control;

TEST(BlankTest, DefaultsPutEveryControlIntoItsEmptyState) {
  SettingsForm form({L"a.xml", L"b.xml"});
  for (const ControlDesign& control : controls()) {
    form[control.control].ticked = true;
    form[control.control].position = 2;
    if (control.kind == Kind::Text) form[control.control].text = L"left over";
  }
  form[txtDescription].enabled = false;
  showAccessionFields(form, L"Account,11");
  clearToDefaults(form);

  EXPECT_TRUE(form[txtDescription].enabled);
  for (const Control text : {txtDescription, txtRequestFileName, txtResponseFileName, txtContextXML,
                             txtCloseDictation, txtApplicableFields}) {
    EXPECT_EQ(L"", form[text].text);
  }
  EXPECT_EQ(L"0", form[txtPort].text);
  for (const Control list :
       {cmbVendorType, cmbStartPACS, cmbManualEntry, cmbResPassword, cmbPollingOption,
        cmbPollingAction, cmbContextUpdate, cmbContextChangeOption, cmbPollingDisplayField,
        cmbCloseDictationAction, cmbResponseType}) {
    EXPECT_EQ(0, form[list].position);
  }
  EXPECT_EQ(1, form[cmbRequestPassword].position);
  EXPECT_FALSE(form[cmbRequestPassword].enabled);
  EXPECT_EQ(-1, form[cmbXMLConfugrationFile].position);
  for (const ControlDesign& control : controls()) EXPECT_FALSE(form[control.control].ticked);
  EXPECT_EQ(0, getUserLogonMappingValue(form));
  EXPECT_TRUE(form.accessionTicks.none());
  EXPECT_EQ(L"", form.accessionFieldText);
  EXPECT_EQ(2u, form.xmlFiles.size());
  // The status texts belong to no configuration.
  EXPECT_EQ(L"left over", form[txtFinishedStatus].text);
}

TEST(BlankTest, DefaultsAreBlank) {
  SettingsForm form;
  clearToDefaults(form);
  EXPECT_TRUE(isBlank(form));
}

TEST(BlankTest, EachFieldOfTheTestMakesTheFormNotBlank) {
  const auto blankAfter = [](auto change) {
    SettingsForm form;
    clearToDefaults(form);
    change(form);
    return isBlank(form);
  };
  EXPECT_FALSE(blankAfter([](SettingsForm& f) { f[cmbVendorType].position = 1; }));
  EXPECT_FALSE(blankAfter([](SettingsForm& f) { f[cmbStartPACS].position = 1; }));
  EXPECT_FALSE(blankAfter([](SettingsForm& f) { f[cmbManualEntry].position = 2; }));
  EXPECT_FALSE(blankAfter([](SettingsForm& f) { f[cmbRequestPassword].position = 0; }));
  EXPECT_FALSE(blankAfter([](SettingsForm& f) { f[cmbRequestPassword].position = 2; }));
  EXPECT_FALSE(blankAfter([](SettingsForm& f) { f[chkUserLogon].ticked = true; }));
  EXPECT_FALSE(blankAfter([](SettingsForm& f) { f[txtResponseFileName].text = L" "; }));
  EXPECT_FALSE(blankAfter([](SettingsForm& f) { f[txtRequestFileName].text = L"x"; }));
  EXPECT_FALSE(blankAfter([](SettingsForm& f) { f[txtDescription].text = L"x"; }));
}

TEST(BlankTest, OtherFieldsDoNotCount) {
  SettingsForm form;
  clearToDefaults(form);
  form[txtPort].text = L"104";
  form[chkCloseDictation].ticked = true;
  form[txtContextXML].text = L"x";
  form[cmbPollingOption].position = 1;
  EXPECT_TRUE(isBlank(form));
}

}  // namespace
}  // namespace tlpacscfg::test
