#include "ui/settings/values/settings_rules.h"

#include <gtest/gtest.h>

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

}  // namespace
}  // namespace tlpacscfg::test
