#include "ui/settings/values/settings_rules.h"

#include <gtest/gtest.h>

#include <map>
#include <optional>
#include <ostream>
#include <set>

#include "support/text.h"

namespace tlpacscfg::test {
namespace {

using enum Control;

/// The input of the rules.
struct Inputs {
  int vendorPosition;
  int responseType;
  bool responses;
  int polling;
  bool contextPolling;
  bool closeDictation;
  std::int16_t mapping;
  int accessionOption;  ///< -1: none selected.
  int files;
  int filePosition;
};

std::ostream& operator<<(std::ostream& stream, const Inputs& in) {
  return stream << "vendor " << in.vendorPosition << ", type " << in.responseType << ", responses "
                << in.responses << ", polling " << in.polling << ", context " << in.contextPolling
                << ", close " << in.closeDictation << ", mapping " << in.mapping << ", accession "
                << in.accessionOption << ", files " << in.files << " at " << in.filePosition;
}

/// The previous state of the window, which must not affect the result.
struct PreviousState {
  bool enabled;
  bool ticked;
  int position;
};

constexpr PreviousState kPreviousStates[] = {{true, true, 2}, {false, false, 1}, {true, false, 0}};

SettingsForm formOf(const Inputs& in, const PreviousState& before) {
  std::vector<std::wstring> files;
  for (int i = 0; i < in.files; ++i) files.push_back(L"f" + decimal(i) + L".xml");
  SettingsForm form(files);
  for (const ControlDesign& control : controls()) {
    ControlContent& content = form[control.control];
    content.enabled = before.enabled;
    content.visible = before.enabled;
    if (control.kind == Kind::Check) content.ticked = before.ticked;
    if (control.kind == Kind::List) content.position = before.position;
  }
  form[lblResponseFileName].text = L"whatever";
  form[txtResponseFileName].tooltip = L"whatever";
  form[cmbVendorType].position = -1;
  SetUserLogonMapping(form, in.mapping);
  form[cmbVendorType].position = in.vendorPosition;
  form[cmbResponseType].position = in.responseType;
  form[chkResponseEnabled].ticked = in.responses;
  form[cmbPollingOption].position = in.polling;
  form[chkEnableContextPolling].ticked = in.contextPolling;
  form[chkCloseDictation].ticked = in.closeDictation;
  if (in.accessionOption >= 0) setMACOption(form, static_cast<std::int16_t>(in.accessionOption));
  form[cmbXMLConfugrationFile].position = in.filePosition;
  return form;
}

struct Expectation {
  std::optional<bool> enabled;
  std::optional<bool> visible;
  std::optional<bool> ticked;
  std::optional<int> position;
  std::optional<std::wstring> text;
  std::optional<std::wstring_view> tooltip;
};

using Oracle = std::map<Control, Expectation>;

/// The columns of the table of vendor formats.
enum class VendorColumn { Ge, Custom, Broker, Other };

constexpr std::int16_t kCodesByPosition[] = {0, 1, 2, 3, 9, 7, 4, 5, 8};

void expectCleared(Oracle& oracle, Control box) {
  oracle[box].enabled = false;
  oracle[box].ticked = false;
}

/// An independent implementation of the rules, without the program's tables.
Oracle oracleOf(const Inputs& in) {
  Oracle oracle;
  const bool fallback =
      in.files == 0 && in.vendorPosition >= 0 &&
      (kCodesByPosition[in.vendorPosition] == 7 || kCodesByPosition[in.vendorPosition] == 9);
  const int code = fallback || in.vendorPosition < 0 ? 0 : kCodesByPosition[in.vendorPosition];
  const VendorColumn column = code == 2                ? VendorColumn::Ge
                              : code == 7 || code == 9 ? VendorColumn::Custom
                              : code == 4 || code == 5 ? VendorColumn::Broker
                                                       : VendorColumn::Other;
  const bool broker = column == VendorColumn::Broker;
  const int mapping = column == VendorColumn::Ge ? 0 : in.mapping;
  if (fallback) oracle[cmbVendorType].position = 0;

  oracle[chkUserLogon].enabled = column != VendorColumn::Ge;
  oracle[chkUserLogon].ticked = mapping != 0;
  if (column == VendorColumn::Ge) {
    for (const Control option : {radLogonMapPACS_0, radLogonMapPACS_1, radLogonMapCorvane_0,
                                 radLogonMapCorvane_1, radLogonMapCorvane_2}) {
      expectCleared(oracle, option);
    }
  }
  oracle[cmbContextUpdate].enabled = broker;
  oracle[cmbResPassword].enabled = column == VendorColumn::Custom || column == VendorColumn::Other;
  for (const Control control :
       {lblConfigurationFile, lblCustomConfigOptions, cmbXMLConfugrationFile}) {
    oracle[control].visible = column == VendorColumn::Custom;
  }
  oracle[cmbXMLConfugrationFile].position =
      column == VendorColumn::Custom && in.filePosition < 0 ? 0 : in.filePosition;
  oracle[cmbStartPACS].enabled = !broker;
  if (broker) oracle[cmbStartPACS].position = 0;
  for (const Control control :
       {txtRequestFileName, chkDeleteFlag, chkCheckFileDateTime, chkPreProcessFile}) {
    oracle[control].enabled = !broker && code != 8;
  }
  for (const Control box : {chkRequestDefaultText, chkResponseReportText}) {
    if (code == 5) {
      oracle[box].enabled = true;
    } else {
      expectCleared(oracle, box);
    }
  }
  int type = in.responseType;
  if (broker) {
    type = 0;
    oracle[cmbResponseType].enabled = false;
    oracle[cmbResponseType].position = 0;
    oracle[txtResponseFileName].enabled = false;
    oracle[txtApplicableFields].enabled = false;
    expectCleared(oracle, chkNonPACS);
    oracle[cmbRequestPassword].enabled = false;
    oracle[cmbRequestPassword].position = 0;
  } else {
    oracle[cmbResponseType].position = type;
    oracle[cmbRequestPassword].enabled = mapping != 0;
  }

  if (in.responses) {
    for (const Control control : {chkPaused, chkAborted, chkSendAbortForCanceledOpen}) {
      oracle[control].enabled = true;
    }
    if (!broker) {
      for (const Control control : {chkNonPACS, txtResponseFileName, cmbResponseType}) {
        oracle[control].enabled = true;
      }
    }
  } else {
    for (const Control box :
         {chkPaused, chkAborted, chkSendAbortForCanceledOpen, chkNonPACS, chkResponseReportText}) {
      expectCleared(oracle, box);
    }
    oracle[txtResponseFileName].enabled = false;
    oracle[cmbResponseType].enabled = false;
    oracle[cmbResPassword].enabled = false;
    oracle[cmbResPassword].position = 0;
  }
  const bool fields = in.responses && (type == 1 || type == 2);
  oracle[txtApplicableFields].enabled = fields;
  for (const Control control :
       {txtApplicableFields, lblApplicableFields, lblAddressHint, lblHintApplicable}) {
    oracle[control].visible = fields;
  }
  oracle[cmbResPassword].visible = !fields;
  oracle[lblResponsePassword].visible = !fields;
  oracle[chkUpdateXMLData].enabled = in.responses && !fields;
  if (!fields) {
    oracle[lblResponseFileName].text = L"Response File Path and Name";
    oracle[txtResponseFileName].tooltip = L"Sets the path and file name of the response file";
  } else if (type == 1) {
    oracle[lblResponseFileName].text = L"URL Address";
    oracle[txtResponseFileName].tooltip = L"Sets the URL to send for the response";
  } else {
    oracle[lblResponseFileName].text = L"HL7 Message";
    oracle[txtResponseFileName].tooltip = L"Sets the HL7 message to send for the response";
  }

  if (mapping == 0 && !broker) {
    oracle[cmbRequestPassword].position = 1;
    oracle[cmbRequestPassword].enabled = false;
  }

  oracle[cmbPollingAction].enabled = in.polling != 0;
  if (in.polling == 0) oracle[cmbPollingAction].position = 0;
  oracle[cmbPollingDisplayField].enabled = true;

  for (const Control control :
       {cmbContextChangeOption, optMultiAccessionHandlingOption_0,
        optMultiAccessionHandlingOption_1, optMultiAccessionHandlingOption_2}) {
    oracle[control].enabled = in.contextPolling;
  }
  oracle[txtContextXML].enabled = in.contextPolling && code != 2;
  if (!in.contextPolling) oracle[cmbContextChangeOption].position = 0;
  const int accession = in.contextPolling && in.accessionOption < 0 ? 0 : in.accessionOption;
  oracle[optMultiAccessionHandlingOption_0].ticked = accession == 0;
  oracle[optMultiAccessionHandlingOption_1].ticked = accession == 1;
  oracle[optMultiAccessionHandlingOption_2].ticked = accession == 2;

  oracle[txtCloseDictation].enabled = in.closeDictation;
  oracle[cmbCloseDictationAction].enabled = in.closeDictation;
  return oracle;
}

bool isAsExpected(const Expectation& expected, const ControlContent& before,
                  const ControlContent& after) {
  return after.enabled == expected.enabled.value_or(before.enabled) &&
         after.visible == expected.visible.value_or(before.visible) &&
         after.ticked == expected.ticked.value_or(before.ticked) &&
         after.position == expected.position.value_or(before.position) &&
         after.text == expected.text.value_or(before.text) &&
         after.tooltip == expected.tooltip.value_or(before.tooltip);
}

/// Everything that no rule mentions must stay unchanged too.
void check(const Inputs& in) {
  for (const PreviousState& before : kPreviousStates) {
    const SettingsForm form = formOf(in, before);
    const RuleResult result = applyFieldRules(form);
    Oracle oracle = oracleOf(in);
    for (const ControlDesign& control : controls()) {
      ASSERT_TRUE(isAsExpected(oracle[control.control], form[control.control],
                               result.form[control.control]))
          << toUtf8(control.name) << " with " << in << ", before: " << before.enabled
          << before.ticked << before.position;
    }
  }
}

TEST(FieldRulesTest, EveryCombinationOfWhatTheRulesReadGivesThePrescribedStates) {
  for (int vendorPosition = -1; vendorPosition < 9; ++vendorPosition) {
    for (int type = -1; type < 3; ++type) {
      for (const bool responses : {false, true}) {
        for (std::int16_t mapping = 0; mapping <= 6; ++mapping) {
          for (const auto& [files, position] :
               {std::pair{0, -1}, std::pair{2, -1}, std::pair{2, 1}}) {
            check({vendorPosition, type, responses, 1, true, true, mapping, 1, files, position});
            if (HasFatalFailure()) return;
          }
        }
      }
    }
  }
}

TEST(FieldRulesTest, PollingContextChangesAndCloseDictationFollowTheirOwnControls) {
  for (int vendorPosition = -1; vendorPosition < 9; ++vendorPosition) {
    for (int polling = -1; polling < 2; ++polling) {
      for (const bool contextPolling : {false, true}) {
        for (const bool closeDictation : {false, true}) {
          for (int accession = -1; accession < 3; ++accession) {
            for (const bool responses : {false, true}) {
              check({vendorPosition, 0, responses, polling, contextPolling, closeDictation, 0,
                     accession, 1, 0});
              if (HasFatalFailure()) return;
            }
          }
        }
      }
    }
  }
}

TEST(FieldRulesTest, ApplyingTheRulesTwiceChangesNothingMore) {
  for (int vendorPosition = 0; vendorPosition < 9; ++vendorPosition) {
    for (int type = 0; type < 3; ++type) {
      for (const int files : {0, 1}) {
        const Inputs in{vendorPosition, type, true, 0, true, false, 5, -1, files, -1};
        const RuleResult once = applyFieldRules(formOf(in, kPreviousStates[0]));
        const RuleResult twice = applyFieldRules(once.form);
        EXPECT_EQ(once.form, twice.form) << in;
        EXPECT_EQ(std::nullopt, twice.message);
      }
    }
  }
}

TEST(FieldRulesTest, OnlyTheCustomFormatsWithoutAnyFileGiveAMessage) {
  for (int vendorPosition = -1; vendorPosition < 9; ++vendorPosition) {
    for (const int files : {0, 1}) {
      const Inputs in{vendorPosition, 0, true, 0, false, false, 0, -1, files, -1};
      const RuleResult result = applyFieldRules(formOf(in, kPreviousStates[0]));
      const bool custom = vendorPosition == 4 || vendorPosition == 5;
      if (custom && files == 0) {
        ASSERT_TRUE(result.message.has_value());
        EXPECT_EQ(L"No XML files exist in the PROMPTS directory to be used for custom XML mapping.",
                  *result.message);
        EXPECT_EQ(0, result.form[cmbVendorType].position);
      } else {
        EXPECT_EQ(std::nullopt, result.message);
        EXPECT_EQ(vendorPosition, result.form[cmbVendorType].position);
      }
    }
  }
}

TEST(FieldRulesTest, AReturnFromUrlToXmlFileRestoresTheCaptionAndHidesTheFields) {
  Inputs in{1, 1, true, 0, false, false, 0, -1, 0, -1};
  SettingsForm form = applyFieldRules(formOf(in, kPreviousStates[0])).form;
  EXPECT_EQ(L"URL Address", form[lblResponseFileName].text);
  EXPECT_TRUE(form[txtApplicableFields].visible);
  form[cmbResponseType].position = 0;
  form = applyFieldRules(form).form;
  EXPECT_EQ(L"Response File Path and Name", form[lblResponseFileName].text);
  EXPECT_FALSE(form[txtApplicableFields].visible);
}

TEST(FieldRulesTest, ClearedBoxesStayClearedWhenTheirOptionComesBack) {
  const Inputs in{1, 0, true, 0, false, false, 0, -1, 0, -1};
  SettingsForm form = formOf(in, kPreviousStates[0]);
  for (const Control box : {chkPaused, chkAborted, chkNonPACS, chkSendAbortForCanceledOpen}) {
    form[box].ticked = true;
  }
  form[chkResponseEnabled].ticked = false;
  form = applyFieldRules(form).form;
  form[chkResponseEnabled].ticked = true;
  form = applyFieldRules(form).form;
  for (const Control box : {chkPaused, chkAborted, chkNonPACS, chkSendAbortForCanceledOpen}) {
    EXPECT_FALSE(form[box].ticked);
    EXPECT_TRUE(form[box].enabled);
  }
}

TEST(FieldRulesTest, AChangeOfTheseControlsAndNoOthersAppliesTheRules) {
  const std::set<Control> expected = {
      chkResponseEnabled,
      chkAborted,
      chkEnableContextPolling,
      chkCloseDictation,
      cmbPollingOption,
      cmbVendorType,
      cmbResponseType,
      cmbXMLConfugrationFile,
      optMultiAccessionHandlingOption_0,
      optMultiAccessionHandlingOption_1,
      optMultiAccessionHandlingOption_2,
  };
  const auto governing = governingControls();
  EXPECT_EQ(std::set<Control>(governing.begin(), governing.end()), expected);
}

}  // namespace
}  // namespace tlpacscfg::test
