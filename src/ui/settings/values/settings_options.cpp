#include "ui/settings/values/settings_options.h"

namespace tlpacscfg {
CodeTable optionsOf(Control control) {
  switch (control) {
    case Control::cmbVendorType:
      return kVendorFormats;
    case Control::cmbStartPACS:
    case Control::cmbManualEntry:
      return kMicrophoneButtons;
    case Control::cmbResponseType:
      return kResponseTypes;
    case Control::cmbPollingOption:
      return kPollingOptions;
    case Control::cmbPollingAction:
      return kPollingActions;
    case Control::cmbContextChangeOption:
      return offered(kContextChanges);
    case Control::cmbPollingDisplayField:
    case Control::cmpAccessionFields:
      return kDictationFields;
    case Control::cmbCloseDictationAction:
      return offered(kCloseDictationActions);
    case Control::cmbRequestPassword:
      return kRequestPasswords;
    case Control::cmbResPassword:
      return kResponsePasswords;
    case Control::cmbContextUpdate:
      return kContextUpdates;
    default:
      return {};
  }
}

}  // namespace tlpacscfg
