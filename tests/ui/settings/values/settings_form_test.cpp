#include <gtest/gtest.h>

#include "harness/errors.h"
#include "ui/settings/values/settings_form.h"

namespace tlpacscfg::test {
namespace {

using enum Control;

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
  SettingsForm form;
  EXPECT_EQ(std::nullopt, selectedCode(form, cmbVendorType));
  form[cmbVendorType].position = 1000;
  EXPECT_EQ(std::nullopt, selectedCode(form, cmbVendorType));
  EXPECT_RUNTIME_ERROR(requiredCode(form, cmbVendorType), 381, L"Invalid property array index");
}

TEST(NewFormTest, TheWindowOpensWithItsDesignTexts) {
  const SettingsForm form;
  EXPECT_EQ(L"c:\\pacs\\request.xml", form[txtRequestFileName].text);
  EXPECT_EQ(L"c:\\pacs\\response.xml", form[txtResponseFileName].text);
  EXPECT_EQ(L"Response File Path and Name", form[lblResponseFileName].text);
}

}  // namespace
}  // namespace tlpacscfg::test
