#include "ui/settings/view/control_ids.h"

#include <array>

#include "ui/resource.h"

namespace tlpacscfg {
namespace {

struct ControlId {
  Control control;
  int id;
};

// clang-format off
constexpr std::array<ControlId, kControlCount> kIds = {{
    {Control::lblConfig, IDC_frmPACSSettings_lblConfig},
    {Control::lvwConfigs, IDC_frmPACSSettings_lvwConfigs},
    {Control::btnNew, IDC_frmPACSSettings_btnNew},
    {Control::btnSave, IDC_frmPACSSettings_btnSave},
    {Control::btnDelete, IDC_frmPACSSettings_btnDelete},
    {Control::btnExit, IDC_frmPACSSettings_btnExit},
    {Control::SSPACSOptions, IDC_frmPACSSettings_SSPACSOptions},
    {Control::lblGeneralOptions, IDC_frmPACSSettings_lblGeneralOptions},
    {Control::lblDescription, IDC_frmPACSSettings_lblDescription},
    {Control::txtDescription, IDC_frmPACSSettings_txtDescription},
    {Control::lblXMLType, IDC_frmPACSSettings_lblXMLType},
    {Control::cmbVendorType, IDC_frmPACSSettings_cmbVendorType},
    {Control::lblCustomConfigOptions, IDC_frmPACSSettings_lblCustomConfigOptions},
    {Control::lblConfigurationFile, IDC_frmPACSSettings_lblConfigurationFile},
    {Control::cmbXMLConfugrationFile, IDC_frmPACSSettings_cmbXMLConfugrationFile},
    {Control::lblMicOptions, IDC_frmPACSSettings_lblMicOptions},
    {Control::lblPACSInsOvr, IDC_frmPACSSettings_lblPACSInsOvr},
    {Control::cmbStartPACS, IDC_frmPACSSettings_cmbStartPACS},
    {Control::lblManualEntryTrigger, IDC_frmPACSSettings_lblManualEntryTrigger},
    {Control::cmbManualEntry, IDC_frmPACSSettings_cmbManualEntry},
    {Control::lblPollingOptions, IDC_frmPACSSettings_lblPollingOptions},
    {Control::lblPolling, IDC_frmPACSSettings_lblPolling},
    {Control::cmbPollingOption, IDC_frmPACSSettings_cmbPollingOption},
    {Control::Label1, IDC_frmPACSSettings_Label1},
    {Control::cmbPollingAction, IDC_frmPACSSettings_cmbPollingAction},
    {Control::Label6, IDC_frmPACSSettings_Label6},
    {Control::cmbPollingDisplayField, IDC_frmPACSSettings_cmbPollingDisplayField},
    {Control::labPort, IDC_frmPACSSettings_labPort},
    {Control::txtPort, IDC_frmPACSSettings_txtPort},
    {Control::lblRequestOptions, IDC_frmPACSSettings_lblRequestOptions},
    {Control::lblRequestFileName, IDC_frmPACSSettings_lblRequestFileName},
    {Control::txtRequestFileName, IDC_frmPACSSettings_txtRequestFileName},
    {Control::lblReqPassword, IDC_frmPACSSettings_lblReqPassword},
    {Control::cmbRequestPassword, IDC_frmPACSSettings_cmbRequestPassword},
    {Control::chkRequestDefaultText, IDC_frmPACSSettings_chkRequestDefaultText},
    {Control::chkPreProcessFile, IDC_frmPACSSettings_chkPreProcessFile},
    {Control::chkCheckFileDateTime, IDC_frmPACSSettings_chkCheckFileDateTime},
    {Control::chkDeleteFlag, IDC_frmPACSSettings_chkDeleteFlag},
    {Control::lblLogonOptions, IDC_frmPACSSettings_lblLogonOptions},
    {Control::chkUserLogon, IDC_frmPACSSettings_chkUserLogon},
    {Control::lblUserLogonPACS, IDC_frmPACSSettings_lblUserLogonPACS},
    {Control::SSPanel2, IDC_frmPACSSettings_SSPanel2},
    {Control::radLogonMapPACS_0, IDC_frmPACSSettings_radLogonMapPACS_0},
    {Control::radLogonMapPACS_1, IDC_frmPACSSettings_radLogonMapPACS_1},
    {Control::lblMapsTo, IDC_frmPACSSettings_lblMapsTo},
    {Control::lblUserLogonCorvane, IDC_frmPACSSettings_lblUserLogonCorvane},
    {Control::SSPanel3, IDC_frmPACSSettings_SSPanel3},
    {Control::radLogonMapCorvane_0, IDC_frmPACSSettings_radLogonMapCorvane_0},
    {Control::radLogonMapCorvane_1, IDC_frmPACSSettings_radLogonMapCorvane_1},
    {Control::radLogonMapCorvane_2, IDC_frmPACSSettings_radLogonMapCorvane_2},
    {Control::chkResponseEnabled, IDC_frmPACSSettings_chkResponseEnabled},
    {Control::lblResponseType, IDC_frmPACSSettings_lblResponseType},
    {Control::cmbResponseType, IDC_frmPACSSettings_cmbResponseType},
    {Control::lblResponseFileName, IDC_frmPACSSettings_lblResponseFileName},
    {Control::txtResponseFileName, IDC_frmPACSSettings_txtResponseFileName},
    {Control::lblAddressHint, IDC_frmPACSSettings_lblAddressHint},
    {Control::lblApplicableFields, IDC_frmPACSSettings_lblApplicableFields},
    {Control::txtApplicableFields, IDC_frmPACSSettings_txtApplicableFields},
    {Control::lblHintApplicable, IDC_frmPACSSettings_lblHintApplicable},
    {Control::lblResponsePassword, IDC_frmPACSSettings_lblResponsePassword},
    {Control::cmbResPassword, IDC_frmPACSSettings_cmbResPassword},
    {Control::lblSendResponseFor, IDC_frmPACSSettings_lblSendResponseFor},
    {Control::lblStatus, IDC_frmPACSSettings_lblStatus},
    {Control::chkCompleted, IDC_frmPACSSettings_chkCompleted},
    {Control::txtFinishedStatus, IDC_frmPACSSettings_txtFinishedStatus},
    {Control::chkPaused, IDC_frmPACSSettings_chkPaused},
    {Control::txtPausedStatus, IDC_frmPACSSettings_txtPausedStatus},
    {Control::chkAborted, IDC_frmPACSSettings_chkAborted},
    {Control::txtAbortedStatus, IDC_frmPACSSettings_txtAbortedStatus},
    {Control::chkNonPACS, IDC_frmPACSSettings_chkNonPACS},
    {Control::txtNonPACS, IDC_frmPACSSettings_txtNonPACS},
    {Control::chkUpdateXMLData, IDC_frmPACSSettings_chkUpdateXMLData},
    {Control::chkSendAbortForCanceledOpen, IDC_frmPACSSettings_chkSendAbortForCanceledOpen},
    {Control::chkResponseReportText, IDC_frmPACSSettings_chkResponseReportText},
    {Control::Label4, IDC_frmPACSSettings_Label4},
    {Control::chkEnableContextPolling, IDC_frmPACSSettings_chkEnableContextPolling},
    {Control::Label5, IDC_frmPACSSettings_Label5},
    {Control::cmbContextChangeOption, IDC_frmPACSSettings_cmbContextChangeOption},
    {Control::lblContextChangeXML, IDC_frmPACSSettings_lblContextChangeXML},
    {Control::txtContextXML, IDC_frmPACSSettings_txtContextXML},
    {Control::Label8, IDC_frmPACSSettings_Label8},
    {Control::optMultiAccessionHandlingOption_2, IDC_frmPACSSettings_optMultiAccessionHandlingOption_2},
    {Control::optMultiAccessionHandlingOption_1, IDC_frmPACSSettings_optMultiAccessionHandlingOption_1},
    {Control::optMultiAccessionHandlingOption_0, IDC_frmPACSSettings_optMultiAccessionHandlingOption_0},
    {Control::Label7, IDC_frmPACSSettings_Label7},
    {Control::cmpAccessionFields, IDC_frmPACSSettings_cmpAccessionFields},
    {Control::Label2, IDC_frmPACSSettings_Label2},
    {Control::Label3, IDC_frmPACSSettings_Label3},
    {Control::cmbContextUpdate, IDC_frmPACSSettings_cmbContextUpdate},
    {Control::chkCloseDictation, IDC_frmPACSSettings_chkCloseDictation},
    {Control::Label9, IDC_frmPACSSettings_Label9},
    {Control::txtCloseDictation, IDC_frmPACSSettings_txtCloseDictation},
    {Control::Label10, IDC_frmPACSSettings_Label10},
    {Control::cmbCloseDictationAction, IDC_frmPACSSettings_cmbCloseDictationAction},
}};
// clang-format on

constexpr bool controlsAreInEnumeratorOrder() {
  for (std::size_t i = 0; i < kIds.size(); ++i) {
    if (kIds[i].control != static_cast<Control>(i)) return false;
  }
  return true;
}
static_assert(controlsAreInEnumeratorOrder());

}  // namespace

int idOf(Control control) { return kIds[static_cast<std::size_t>(control)].id; }

}  // namespace tlpacscfg
