#include "ui/settings/values/settings_rules.h"

#include <initializer_list>
#include <utility>

namespace tlpacscfg {
namespace {

using enum Control;

constexpr Control kGoverning[] = {chkResponseEnabled,
                                  chkAborted,
                                  chkEnableContextPolling,
                                  chkCloseDictation,
                                  cmbPollingOption,
                                  cmbVendorType,
                                  cmbResponseType,
                                  cmbXMLConfugrationFile,
                                  optMultiAccessionHandlingOption_0,
                                  optMultiAccessionHandlingOption_1,
                                  optMultiAccessionHandlingOption_2};

constexpr Control kPacsOptions[] = {radLogonMapPACS_0, radLogonMapPACS_1};
constexpr Control kCorvaneOptions[] = {radLogonMapCorvane_0, radLogonMapCorvane_1,
                                       radLogonMapCorvane_2};
constexpr std::size_t kNoOption = 99;

struct ResponseFileTexts {
  const wchar_t* caption;
  const wchar_t* tooltip;
};

constexpr ResponseFileTexts kFileTexts = {L"Response File Path and Name",
                                          L"Sets the path and file name of the response file"};
constexpr ResponseFileTexts kUrlTexts = {L"URL Address", L"Sets the URL to send for the response"};
constexpr ResponseFileTexts kHl7Texts = {L"HL7 Message",
                                         L"Sets the HL7 message to send for the response"};

void enable(SettingsForm& form, std::span<const Control> list, bool enabled) {
  for (const Control control : list) form[control].enabled = enabled;
}

void enable(SettingsForm& form, std::initializer_list<Control> list, bool enabled) {
  enable(form, std::span(list.begin(), list.size()), enabled);
}

void show(SettingsForm& form, std::initializer_list<Control> list, bool visible) {
  for (const Control control : list) form[control].visible = visible;
}

/// A box that does not apply is cleared.
void allow(SettingsForm& form, Control box, bool allowed) {
  form[box].enabled = allowed;
  if (!allowed) form[box].ticked = false;
}

void forceList(SettingsForm& form, Control list, int position) {
  form[list].position = position;
  form[list].enabled = false;
}

void startState(SettingsForm& form) {
  enable(form, {chkUserLogon, cmbResPassword}, true);
  form[cmbContextUpdate].enabled = false;
}

void vendorRules(SettingsForm& form, std::optional<std::int16_t> format) {
  const bool broker = isBroker(format);
  if (format == vendor::kGe) {
    SetUserLogonMapping(form, 0);
    enable(form, {chkUserLogon, cmbResPassword}, false);
  }
  show(form, {lblConfigurationFile, lblCustomConfigOptions, cmbXMLConfugrationFile},
       needsXmlFile(format));
  enable(form, {cmbStartPACS}, true);
  enable(form, {txtRequestFileName, chkDeleteFlag, chkCheckFileDateTime, chkPreProcessFile},
         !broker && format != vendor::kTcpIp);
  allow(form, chkRequestDefaultText, format == vendor::kBrokerExtended);
  allow(form, chkResponseReportText, format == vendor::kBrokerExtended);
  form[cmbRequestPassword].enabled = getUserLogonMappingValue(form) != 0;
  if (!broker) return;
  forceList(form, cmbStartPACS, 0);
  forceList(form, cmbResponseType, 0);
  forceList(form, cmbRequestPassword, 0);
  enable(form, {cmbResPassword, txtResponseFileName, txtApplicableFields}, false);
  allow(form, chkNonPACS, false);
  form[cmbContextUpdate].enabled = true;
}

void setResponseFileTexts(SettingsForm& form, const ResponseFileTexts& texts) {
  form[lblResponseFileName].text = texts.caption;
  form[txtResponseFileName].tooltip = texts.tooltip;
}

/// A URL or a message is filled from fields and has no password option.
void showResponseType(SettingsForm& form, int type) {
  const bool usesFields = type == response::kUrl || type == response::kHl7;
  setResponseFileTexts(
      form, type == response::kUrl ? kUrlTexts : (type == response::kHl7 ? kHl7Texts : kFileTexts));
  form[txtApplicableFields].enabled = usesFields;
  show(form, {txtApplicableFields, lblApplicableFields, lblAddressHint, lblHintApplicable},
       usesFields);
  show(form, {cmbResPassword, lblResponsePassword}, !usesFields);
  form[chkUpdateXMLData].enabled = !usesFields;
}

void responseRules(SettingsForm& form, bool broker) {
  enable(form, {chkPaused, chkAborted, chkSendAbortForCanceledOpen}, true);
  if (form[chkResponseEnabled].ticked) {
    showResponseType(form, form[cmbResponseType].position);
    if (!broker) enable(form, {chkNonPACS, txtResponseFileName, cmbResponseType}, true);
    return;
  }
  showResponseType(form, response::kXmlFile);
  enable(form, {txtResponseFileName, cmbResponseType, chkUpdateXMLData}, false);
  forceList(form, cmbResPassword, 0);
  for (const Control box :
       {chkPaused, chkAborted, chkSendAbortForCanceledOpen, chkNonPACS, chkResponseReportText}) {
    allow(form, box, false);
  }
}

/// A broker has its own option, whether logons are mapped or not.
void requestPasswordRules(SettingsForm& form, bool broker) {
  if (!broker && getUserLogonMappingValue(form) == 0) forceList(form, cmbRequestPassword, 1);
}

void pollingRules(SettingsForm& form) {
  form[cmbPollingAction].enabled = true;
  if (form[cmbPollingOption].position == 0) forceList(form, cmbPollingAction, 0);
  form[cmbPollingDisplayField].enabled = true;
}

void contextChangeRules(SettingsForm& form, std::optional<std::int16_t> format) {
  const bool enabled = form[chkEnableContextPolling].ticked;
  enable(form,
         {cmbContextChangeOption, optMultiAccessionHandlingOption_0,
          optMultiAccessionHandlingOption_1, optMultiAccessionHandlingOption_2},
         enabled);
  form[txtContextXML].enabled = enabled && format != vendor::kGe;
  if (!enabled) {
    form[cmbContextChangeOption].position = 0;
  } else if (!anyMACOptionSelected(form)) {
    setMACOption(form, 0);
  }
}

void closeDictationRules(SettingsForm& form) {
  enable(form, {txtCloseDictation, cmbCloseDictationAction}, form[chkCloseDictation].ticked);
}

/// The formats that map with a file use the first one until another is chosen; without any file
/// they cannot be used.
std::optional<std::wstring> requireXmlFile(SettingsForm& form) {
  if (!needsXmlFile(selectedCode(form, cmbVendorType))) return std::nullopt;
  if (form.xmlFiles.empty()) {
    form[cmbVendorType].position = 0;
    return L"No XML files exist in the PROMPTS directory to be used for custom XML mapping.";
  }
  if (form[cmbXMLConfugrationFile].position < 0) form[cmbXMLConfugrationFile].position = 0;
  return std::nullopt;
}

}  // namespace

std::span<const Control> governingControls() { return kGoverning; }

RuleResult applyFieldRules(SettingsForm form) {
  std::optional<std::wstring> message = requireXmlFile(form);
  const std::optional<std::int16_t> format = selectedCode(form, cmbVendorType);
  startState(form);
  vendorRules(form, format);
  responseRules(form, isBroker(format));
  requestPasswordRules(form, isBroker(format));
  pollingRules(form);
  contextChangeRules(form, format);
  closeDictationRules(form);
  return {std::move(form), std::move(message)};
}

std::int16_t getUserLogonMappingValue(const SettingsForm& form) {
  if (!form[chkUserLogon].ticked) return 0;
  int code = form[radLogonMapPACS_1].ticked ? 4 : 1;
  if (form[radLogonMapCorvane_1].ticked) {
    code += 1;
  } else if (form[radLogonMapCorvane_2].ticked) {
    code += 2;
  }
  return static_cast<std::int16_t>(code);
}

void SetUserLogonMapping(SettingsForm& form, std::int16_t code) {
  ControlContent& password = form[cmbRequestPassword];
  if (code >= 0) {
    enable(form, kPacsOptions, code > 0);
    enable(form, kCorvaneOptions, code > 0);
    password.enabled = code > 0;
  }
  if (code == 0) {
    form[chkUserLogon].ticked = false;
    selectOption(form, kPacsOptions, kNoOption);
    selectOption(form, kCorvaneOptions, kNoOption);
    password.position = 1;
  }
  if (code >= 1 && code <= 6) {
    const auto index = static_cast<std::size_t>(code - 1);
    form[chkUserLogon].ticked = true;
    selectOption(form, kPacsOptions, index / 3);
    selectOption(form, kCorvaneOptions, index % 3);
  }
  if (isBroker(selectedCode(form, cmbVendorType))) {
    password.position = 0;
    password.enabled = false;
  }
}

}  // namespace tlpacscfg
