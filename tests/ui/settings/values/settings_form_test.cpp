#include <gtest/gtest.h>

#include "support/runtime_error.h"
#include "ui/settings/values/settings_form.h"

namespace tlpacscfg::test {
namespace {

using enum Control;

constexpr Control kMappingOptions[] = {radLogonMapPACS_0, radLogonMapPACS_1, radLogonMapCorvane_0,
                                       radLogonMapCorvane_1, radLogonMapCorvane_2};

struct MappingCase {
  std::int16_t code;
  Control pacs;
  Control corvane;
};

constexpr MappingCase kMappings[] = {
    {1, radLogonMapPACS_0, radLogonMapCorvane_0}, {2, radLogonMapPACS_0, radLogonMapCorvane_1},
    {3, radLogonMapPACS_0, radLogonMapCorvane_2}, {4, radLogonMapPACS_1, radLogonMapCorvane_0},
    {5, radLogonMapPACS_1, radLogonMapCorvane_1}, {6, radLogonMapPACS_1, radLogonMapCorvane_2},
};

TEST(LogonMappingTest, EveryCodeSelectsItsPairOfOptionsAndIsReadBack) {
  for (const MappingCase& mapping : kMappings) {
    SettingsForm form;
    SetUserLogonMapping(form, mapping.code);
    EXPECT_TRUE(form[chkUserLogon].ticked);
    for (const Control option : kMappingOptions) {
      EXPECT_EQ(option == mapping.pacs || option == mapping.corvane, form[option].ticked);
      EXPECT_TRUE(form[option].enabled);
    }
    EXPECT_TRUE(form[cmbRequestPassword].enabled);
    EXPECT_EQ(-1, form[cmbRequestPassword].position);
    EXPECT_EQ(mapping.code, getUserLogonMappingValue(form));
  }
}

TEST(LogonMappingTest, CodeZeroClearsAndDisablesTheOptionsAndThePasswordList) {
  SettingsForm form;
  SetUserLogonMapping(form, 6);
  form[cmbRequestPassword].position = 2;
  SetUserLogonMapping(form, 0);
  EXPECT_FALSE(form[chkUserLogon].ticked);
  for (const Control option : kMappingOptions) {
    EXPECT_FALSE(form[option].ticked);
    EXPECT_FALSE(form[option].enabled);
  }
  EXPECT_EQ(1, form[cmbRequestPassword].position);
  EXPECT_FALSE(form[cmbRequestPassword].enabled);
  EXPECT_EQ(0, getUserLogonMappingValue(form));
}

TEST(LogonMappingTest, ACodeAboveSixEnablesTheOptionsAndChangesNone) {
  SettingsForm form;
  SetUserLogonMapping(form, 0);
  SettingsForm expected = form;
  for (const Control option : kMappingOptions) expected[option].enabled = true;
  expected[cmbRequestPassword].enabled = true;
  SetUserLogonMapping(form, 7);
  EXPECT_EQ(expected, form);
}

TEST(LogonMappingTest, ANegativeCodeChangesNothing) {
  SettingsForm form;
  SetUserLogonMapping(form, 5);
  const SettingsForm before = form;
  SetUserLogonMapping(form, -1);
  EXPECT_EQ(before, form);
}

TEST(LogonMappingTest, ABrokerEndsWithTheFirstPasswordOptionWhateverTheCode) {
  for (const std::int16_t format : {vendor::kBroker, vendor::kBrokerExtended}) {
    for (std::int16_t code = -1; code <= 7; ++code) {
      SettingsForm form;
      selectCode(form, cmbVendorType, format);
      form[cmbRequestPassword].position = 2;
      SetUserLogonMapping(form, code);
      EXPECT_EQ(0, form[cmbRequestPassword].position);
      EXPECT_FALSE(form[cmbRequestPassword].enabled);
    }
  }
}

TEST(LogonMappingTest, ATickedBoxWithoutOptionsCountsAsTheFirstPair) {
  SettingsForm form;
  form[chkUserLogon].ticked = true;
  EXPECT_EQ(1, getUserLogonMappingValue(form));
  form[chkUserLogon].ticked = false;
  form[radLogonMapPACS_1].ticked = true;
  EXPECT_EQ(0, getUserLogonMappingValue(form));
}

TEST(MultipleAccessionTest, TheOptionIsReadByItsIndex) {
  SettingsForm form;
  EXPECT_EQ(0, getMACOption(form));
  EXPECT_FALSE(anyMACOptionSelected(form));
  for (std::int16_t index = 2; index >= 0; --index) {
    setMACOption(form, index);
    EXPECT_EQ(index, getMACOption(form));
    EXPECT_TRUE(anyMACOptionSelected(form));
  }
}

TEST(MultipleAccessionTest, AnUnknownIndexLeavesTheOptionsAsTheyWere) {
  SettingsForm form;
  setMACOption(form, 2);
  for (const int index : {-1, 3, 32767}) {
    setMACOption(form, static_cast<std::int16_t>(index));
    EXPECT_EQ(2, getMACOption(form));
  }
}

TEST(AccessionFieldsTest, AListTicksTheEntriesThatItNames) {
  SettingsForm form;
  showAccessionFields(form, L"Visit ID,Account,User Defined 1");
  EXPECT_EQ(L"Visit ID,Account,User Defined 1", form.accessionFieldText);
  EXPECT_EQ(L"Account, User Defined 1, Visit ID", accessionDisplayText(form));
}

TEST(AccessionFieldsTest, AnEmptyListUnticksEveryEntry) {
  SettingsForm form;
  showAccessionFields(form, L"Account");
  showAccessionFields(form, L"");
  EXPECT_TRUE(form.accessionTicks.none());
  EXPECT_EQ(L"", form.accessionFieldText);
  EXPECT_EQ(L"", accessionDisplayText(form));
}

TEST(AccessionFieldsTest, AnotherListReplacesTheTicksOfTheFormerOne) {
  SettingsForm form;
  showAccessionFields(form, L"Account");
  showAccessionFields(form, L"Department");
  EXPECT_EQ(L"Department", accessionDisplayText(form));
}

TEST(AccessionFieldsTest, PiecesAreComparedExactly) {
  SettingsForm form;
  showAccessionFields(form, L"account, Department,Location ,11");
  EXPECT_TRUE(form.accessionTicks.none());
  EXPECT_EQ(L"account, Department,Location ,11", form.accessionFieldText);
  EXPECT_EQ(L"", accessionDisplayText(form));
}

TEST(AccessionFieldsTest, AChangedTickRebuildsTheStoredTextInListOrderWithoutBlanks) {
  SettingsForm form;
  showAccessionFields(form, L"Visit ID,11");
  form.accessionTicks.set(0);
  accessionTicksChanged(form);
  EXPECT_EQ(L"Accession ID,Visit ID", form.accessionFieldText);
  EXPECT_EQ(L"Accession ID, Visit ID", accessionDisplayText(form));
}

TEST(AccessionFieldsTest, ThePlaceholderIsEmpty) { EXPECT_EQ(L"", getMultiAccessFields()); }

TEST(ListSelectionTest, AnUnmatchedCodeLeavesTheListAsItWas) {
  SettingsForm form;
  selectCode(form, cmbManualEntry, 8);
  EXPECT_EQ(2, form[cmbManualEntry].position);
  selectCode(form, cmbManualEntry, 1);
  EXPECT_EQ(2, form[cmbManualEntry].position);
  EXPECT_EQ(8, requiredCode(form, cmbManualEntry));
}

TEST(ListSelectionTest, TheCodeOfNoEntryIsAnError) {
  const SettingsForm form;
  EXPECT_EQ(std::nullopt, selectedCode(form, cmbVendorType));
  try {
    requiredCode(form, cmbVendorType);
    FAIL();
  } catch (const RunTimeError& error) {
    EXPECT_EQ(381, error.number());
    EXPECT_EQ(L"Invalid property array index", error.description());
  }
}

TEST(NewFormTest, TheWindowOpensWithItsDesignTexts) {
  const SettingsForm form;
  EXPECT_EQ(L"c:\\pacs\\request.xml", form[txtRequestFileName].text);
  EXPECT_EQ(L"c:\\pacs\\response.xml", form[txtResponseFileName].text);
  EXPECT_EQ(L"Response File Path and Name", form[lblResponseFileName].text);
}

TEST(NewFormTest, DefaultsPutEveryControlIntoItsEmptyState) {
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
