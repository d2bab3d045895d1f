#include "ui/settings/values/settings_validation.h"

#include <gtest/gtest.h>

#include "ui/settings/values/blank_form.h"

namespace tlpacscfg::test {
namespace {

using enum Control;

constexpr const wchar_t* kSameButton =
    L"The 'Confirm Start Integration' microphone button and the 'Switch To Manual Entry' "
    L"microphone button cannot be the same button. Please change one and save again.";
constexpr const wchar_t* kBlankDescription =
    L"The Configuration Description Field cannot be blank.";
constexpr const wchar_t* kUrlMarker =
    L"Applicable Fields must be set if the URL Address contains the {AF} field marker.";
constexpr const wchar_t* kHl7Marker =
    L"Applicable Fields must be set if the HL7 Message contains the {AF} field marker.";
constexpr const wchar_t* kTcpIpPort =
    L"TCP/IP Port is not valid.  Please enter a port number between 1 and 65000.";
constexpr const wchar_t* kBrokerPort =
    L"Port is not valid.  Please enter a port number between 0 and 65000.";

std::wstring inUse(const std::wstring& name) {
  return L"The configuration name '" + name +
         L"' is already in use by another configuration.  Please change the configuration name in "
         L"the 'Description' field.";
}

using Messages = std::vector<std::wstring>;

class ValidDataTest : public ::testing::Test {
 protected:
  ValidDataTest() {
    clearToDefaults(form);
    form[txtDescription].text = L"Mine";
    configurations.AddIntitialConfig();
    add(1, L"Default");
    add(2, L" Mine ");
    add(3, L"Z\u00dcRICH");
  }

  void add(std::int16_t id, const std::wstring& description) {
    const auto record = std::make_shared<clsPACSConfiguration>();
    record->configID = id;
    record->Description = description;
    configurations.AddCurrenttoCollection(record);
  }

  Validation validate() const { return ValidData(form, configurations, 2); }
  Messages messages() const { return validate().messages; }

  SettingsForm form;
  colPACSConfiguration configurations;
};

TEST_F(ValidDataTest, DefaultsWithADescriptionAreValid) {
  EXPECT_EQ(Messages{}, messages());
  EXPECT_FALSE(validate().resetPort);
}

TEST_F(ValidDataTest, TheTwoMicrophoneButtonsMustDifferUnlessBothAreNone) {
  for (int start = 0; start < 3; ++start) {
    for (int manual = 0; manual < 3; ++manual) {
      form[cmbStartPACS].position = start;
      form[cmbManualEntry].position = manual;
      const bool same = start == manual && start > 0;
      EXPECT_EQ(same ? Messages{kSameButton} : Messages{}, messages());
    }
  }
}

TEST_F(ValidDataTest, ADescriptionOfBlanksIsBlank) {
  for (const wchar_t* text : {L"", L"   "}) {
    form[txtDescription].text = text;
    EXPECT_EQ(Messages{kBlankDescription}, messages());
  }
}

TEST_F(ValidDataTest, AnotherConfigurationsDescriptionIsRefusedWithoutRegardToCaseAndBlanks) {
  for (const wchar_t* text : {L"Default", L"  dEFAULT ", L"z\u00fcrich"}) {
    form[txtDescription].text = text;
    EXPECT_EQ(Messages{inUse(text)}, messages());
  }
}

TEST_F(ValidDataTest, TheConfigurationsOwnDescriptionIsAccepted) {
  form[txtDescription].text = L"MINE  ";
  EXPECT_EQ(Messages{}, messages());
  EXPECT_EQ(Messages{inUse(L"MINE  ")}, ValidData(form, configurations, 0).messages);
}

TEST_F(ValidDataTest, DescriptionsThatClashTwiceAreReportedOnce) {
  add(4, L"default");
  form[txtDescription].text = L"Default";
  EXPECT_EQ(1u, messages().size());
}

TEST_F(ValidDataTest, TheSameButtonHidesTheDescriptionChecks) {
  form[cmbStartPACS].position = 1;
  form[cmbManualEntry].position = 1;
  form[txtDescription].text = L"";
  EXPECT_EQ(Messages{kSameButton}, messages());
}

TEST_F(ValidDataTest, LaterChecksStillRunAfterAFailure) {
  form[txtDescription].text = L"";
  form[cmbResponseType].position = response::kHl7;
  form[txtResponseFileName].text = L"MSH|{af}";
  selectCode(form, cmbVendorType, vendor::kTcpIp);
  form[txtPort].text = L"x";
  EXPECT_EQ((Messages{kBlankDescription, kHl7Marker, kTcpIpPort}), messages());
  form[cmbStartPACS].position = 2;
  form[cmbManualEntry].position = 2;
  EXPECT_EQ((Messages{kSameButton, kHl7Marker, kTcpIpPort}), messages());
}

TEST_F(ValidDataTest, AMarkerAfterTheFirstCharacterNeedsApplicableFields) {
  struct Case {
    const wchar_t* text;
    bool counts;
  };
  for (const Case& c : {Case{L"", false}, Case{L"http://x", false}, Case{L"{AF}", false},
                        Case{L"{AF}x{AF}", false}, Case{L"x{AF}", true}, Case{L" {aF}", true},
                        Case{L"http://x?a={af}&b", true}, Case{L"x{A F}", false}}) {
    form[txtResponseFileName].text = c.text;
    form[cmbResponseType].position = response::kUrl;
    EXPECT_EQ(c.counts ? Messages{kUrlMarker} : Messages{}, messages());
    form[cmbResponseType].position = response::kHl7;
    EXPECT_EQ(c.counts ? Messages{kHl7Marker} : Messages{}, messages());
    form[cmbResponseType].position = response::kXmlFile;
    EXPECT_EQ(Messages{}, messages());
  }
}

TEST_F(ValidDataTest, ApplicableFieldsOfBlanksAreEnough) {
  form[cmbResponseType].position = response::kUrl;
  form[txtResponseFileName].text = L"x{AF}";
  form[txtApplicableFields].text = L" ";
  EXPECT_EQ(Messages{}, messages());
}

TEST_F(ValidDataTest, PortZeroIsRefusedForTcpIpAndAcceptedForTheExtendedBroker) {
  form[txtPort].text = L"0";
  selectCode(form, cmbVendorType, vendor::kTcpIp);
  EXPECT_EQ(Messages{kTcpIpPort}, messages());
  selectCode(form, cmbVendorType, vendor::kBrokerExtended);
  EXPECT_EQ(Messages{}, messages());
}

TEST_F(ValidDataTest, Port65000IsAcceptedAnd65001IsRefused) {
  const struct {
    std::int16_t format;
    const wchar_t* complaint;
  } cases[] = {{vendor::kTcpIp, kTcpIpPort}, {vendor::kBrokerExtended, kBrokerPort}};
  for (const auto& each : cases) {
    selectCode(form, cmbVendorType, each.format);
    form[txtPort].text = L"65000";
    EXPECT_EQ(Messages{}, messages());
    form[txtPort].text = L"65001";
    EXPECT_EQ(Messages{each.complaint}, messages());
  }
}

struct PortCase {
  std::wstring text;
  bool tcpIp;
  bool broker;
  bool digits;
};

TEST_F(ValidDataTest, ThePortIsCheckedByTheVendorFormat) {
  const PortCase cases[] = {
      {L"", false, false, false},
      {L"abc", false, false, false},
      {L"-1", false, false, false},
      {L" 80", false, false, false},
      {L"8\u0660", false, false, false},
      {L"0", false, true, true},
      {L"00000000000000000000", false, true, true},
      {L"1", true, true, true},
      {L"00000000000000000104", true, true, true},
      {L"65000", true, true, true},
      {L"65001", false, false, true},
      {L"4294967376", false, false, true},
      {std::wstring(1000, L'9'), false, false, true},
  };
  for (const PortCase& port : cases) {
    for (const Option& format : optionsOf(cmbVendorType)) {
      selectCode(form, cmbVendorType, format.code);
      form[txtPort].text = port.text;
      const Validation result = validate();
      if (format.code == vendor::kTcpIp) {
        EXPECT_EQ(port.tcpIp ? Messages{} : Messages{kTcpIpPort}, result.messages);
        EXPECT_FALSE(result.resetPort);
      } else if (format.code == vendor::kBrokerExtended) {
        EXPECT_EQ(port.broker ? Messages{} : Messages{kBrokerPort}, result.messages);
        EXPECT_FALSE(result.resetPort);
      } else {
        EXPECT_EQ(Messages{}, result.messages);
        EXPECT_EQ(!port.digits, result.resetPort);
      }
    }
  }
}

TEST_F(ValidDataTest, ThePortIsResetAlsoWhenAnotherCheckFails) {
  form[txtDescription].text = L"";
  form[txtPort].text = L"x";
  EXPECT_TRUE(validate().resetPort);
}

TEST_F(ValidDataTest, ListsWithoutASelectedEntryPassTheChecks) {
  form[cmbVendorType].position = -1;
  form[cmbStartPACS].position = -1;
  form[cmbManualEntry].position = -1;
  form[cmbResponseType].position = -1;
  EXPECT_EQ(Messages{}, messages());
}

}  // namespace
}  // namespace tlpacscfg::test
