#include "ui/settings/values/blank_form.h"

#include "ui/settings/values/settings_rules.h"

namespace tlpacscfg {

void clearToDefaults(SettingsForm& form) {
  constexpr Control kCleared[] = {Control::txtDescription,      Control::txtRequestFileName,
                                  Control::txtResponseFileName, Control::txtContextXML,
                                  Control::txtCloseDictation,   Control::txtApplicableFields};
  form[Control::txtDescription].enabled = true;
  for (const Control text : kCleared) form[text].text.clear();
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
