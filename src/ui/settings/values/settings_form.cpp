#include "ui/settings/values/settings_form.h"

#include <algorithm>
#include <utility>

#include "support/runtime_error.h"
#include "support/text.h"

namespace tlpacscfg {
namespace {

constexpr Control kPacsOptions[] = {Control::radLogonMapPACS_0, Control::radLogonMapPACS_1};
constexpr Control kCorvaneOptions[] = {Control::radLogonMapCorvane_0, Control::radLogonMapCorvane_1,
                                       Control::radLogonMapCorvane_2};
constexpr Control kMacOptions[] = {Control::optMultiAccessionHandlingOption_0,
                                   Control::optMultiAccessionHandlingOption_1,
                                   Control::optMultiAccessionHandlingOption_2};

/// No option is selected for an index outside of the group.
void selectOption(SettingsForm& form, std::span<const Control> group, std::size_t index) {
  for (std::size_t i = 0; i < group.size(); ++i) form[group[i]].ticked = i == index;
}

void enableOptions(SettingsForm& form, std::span<const Control> group, bool enabled) {
  for (const Control option : group) form[option].enabled = enabled;
}

constexpr std::size_t kNoOption = 99;

std::wstring tickedFields(const SettingsForm& form, const wchar_t* separator) {
  std::wstring text;
  for (std::size_t i = 0; i < kDictationFieldCount; ++i) {
    if (!form.accessionTicks[i]) continue;
    if (!text.empty()) text += separator;
    text += dictationFields()[i].text;
  }
  return text;
}

}  // namespace

SettingsForm::SettingsForm(std::vector<std::wstring> files) : xmlFiles(std::move(files)) {
  for (const ControlDesign& control : controls()) {
    (*this)[control.control].text = control.text;
    (*this)[control.control].tooltip = control.tooltip;
  }
}

std::optional<std::int16_t> selectedCode(const SettingsForm& form, Control list) {
  const auto options = optionsOf(list);
  const int position = form[list].position;
  if (position < 0 || static_cast<std::size_t>(position) >= options.size()) return std::nullopt;
  return options[static_cast<std::size_t>(position)].code;
}

std::int16_t requiredCode(const SettingsForm& form, Control list) {
  const std::optional<std::int16_t> code = selectedCode(form, list);
  if (!code) raise(ErrorNumber::InvalidPropertyArrayIndex);
  return *code;
}

void selectCode(SettingsForm& form, Control list, std::int16_t code) {
  const auto options = optionsOf(list);
  for (std::size_t i = 0; i < options.size(); ++i) {
    if (options[i].code == code) form[list].position = static_cast<int>(i);
  }
}

bool isBroker(std::optional<std::int16_t> vendorFormat) {
  return vendorFormat == vendor::kBroker || vendorFormat == vendor::kBrokerExtended;
}

bool needsXmlFile(std::optional<std::int16_t> vendorFormat) {
  return vendorFormat == vendor::kCustom || vendorFormat == vendor::kHmi;
}

std::int16_t getUserLogonMappingValue(const SettingsForm& form) {
  if (!form[Control::chkUserLogon].ticked) return 0;
  int code = form[Control::radLogonMapPACS_1].ticked ? 4 : 1;
  if (form[Control::radLogonMapCorvane_1].ticked) {
    code += 1;
  } else if (form[Control::radLogonMapCorvane_2].ticked) {
    code += 2;
  }
  return static_cast<std::int16_t>(code);
}

void SetUserLogonMapping(SettingsForm& form, std::int16_t code) {
  ControlContent& password = form[Control::cmbRequestPassword];
  if (code >= 0) {
    enableOptions(form, kPacsOptions, code > 0);
    enableOptions(form, kCorvaneOptions, code > 0);
    password.enabled = code > 0;
  }
  if (code == 0) {
    form[Control::chkUserLogon].ticked = false;
    selectOption(form, kPacsOptions, kNoOption);
    selectOption(form, kCorvaneOptions, kNoOption);
    password.position = 1;
  }
  if (code >= 1 && code <= 6) {
    const auto index = static_cast<std::size_t>(code - 1);
    form[Control::chkUserLogon].ticked = true;
    selectOption(form, kPacsOptions, index / 3);
    selectOption(form, kCorvaneOptions, index % 3);
  }
  if (isBroker(selectedCode(form, Control::cmbVendorType))) {
    password.position = 0;
    password.enabled = false;
  }
}

std::int16_t getMACOption(const SettingsForm& form) {
  for (std::size_t i = 0; i < std::size(kMacOptions); ++i) {
    if (form[kMacOptions[i]].ticked) return static_cast<std::int16_t>(i);
  }
  return 0;
}

void setMACOption(SettingsForm& form, std::int16_t index) {
  if (index < 0 || static_cast<std::size_t>(index) >= std::size(kMacOptions)) return;
  selectOption(form, kMacOptions, static_cast<std::size_t>(index));
}

bool anyMACOptionSelected(const SettingsForm& form) {
  return std::any_of(std::begin(kMacOptions), std::end(kMacOptions),
                     [&](Control option) { return form[option].ticked; });
}

std::wstring getMultiAccessFields() { return {}; }

void showAccessionFields(SettingsForm& form, std::wstring_view list) {
  form.accessionFieldText = list;
  form.accessionTicks.reset();
  for (const std::wstring_view piece : split(list, L',')) {
    for (std::size_t i = 0; i < kDictationFieldCount; ++i) {
      if (dictationFields()[i].text == piece) form.accessionTicks.set(i);
    }
  }
}

void accessionTicksChanged(SettingsForm& form) {
  form.accessionFieldText = tickedFields(form, L",");
}

std::wstring accessionDisplayText(const SettingsForm& form) { return tickedFields(form, L", "); }

void clearToDefaults(SettingsForm& form) {
  constexpr Control kEmptied[] = {Control::txtDescription,      Control::txtRequestFileName,
                                  Control::txtResponseFileName, Control::txtContextXML,
                                  Control::txtCloseDictation,   Control::txtApplicableFields};
  form[Control::txtDescription].enabled = true;
  for (const Control text : kEmptied) form[text].text.clear();
  form[Control::txtPort].text = L"0";
  for (const ControlDesign& control : controls()) {
    ControlContent& content = form[control.control];
    if (control.kind == Kind::List) content.position = 0;
    content.ticked = false;
  }
  form[Control::cmbRequestPassword].position = 1;
  form[Control::cmbXMLConfugrationFile].position = -1;
  showAccessionFields(form, L"");
  SetUserLogonMapping(form, 0);
}

bool isBlank(const SettingsForm& form) {
  return form[Control::cmbVendorType].position == 0 &&
         selectedCode(form, Control::cmbStartPACS) == 0 &&
         selectedCode(form, Control::cmbManualEntry) == 0 &&
         form[Control::cmbRequestPassword].position == 1 && getUserLogonMappingValue(form) == 0 &&
         form[Control::txtResponseFileName].text.empty() &&
         form[Control::txtRequestFileName].text.empty() &&
         form[Control::txtDescription].text.empty();
}

}  // namespace tlpacscfg
