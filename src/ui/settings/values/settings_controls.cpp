#include "ui/settings/values/settings_controls.h"

#include <array>

namespace tlpacscfg {
namespace {

// clang-format off
constexpr std::array<ControlDesign, kControlCount> kControls = {{
    {Control::lblConfig, L"lblConfig", Kind::Label, Page::Window, L"Integration Configurations", L""},
    {Control::lvwConfigs, L"lvwConfigs", Kind::ListView, Page::Window, L"", L""},
    {Control::btnNew, L"btnNew", Kind::Button, Page::Window, L"&New", L"Initiate the setup of a new configuration"},
    {Control::btnSave, L"btnSave", Kind::Button, Page::Window, L"&Save", L"Save the changes for the currently selected configuration"},
    {Control::btnDelete, L"btnDelete", Kind::Button, Page::Window, L"&Delete", L"Delete the currently selected configuration"},
    {Control::btnExit, L"btnExit", Kind::Button, Page::Window, L"&Exit", L"Exit Corvane Expert Integration Settings dialog"},
    {Control::SSPACSOptions, L"SSPACSOptions", Kind::Tabs, Page::Window, L"", L"", L"Configuration Settings"},
    {Control::lblGeneralOptions, L"lblGeneralOptions", Kind::Heading, Page::General, L"General Integration Options", L""},
    {Control::lblDescription, L"lblDescription", Kind::Label, Page::General, L"Description", L""},
    {Control::txtDescription, L"txtDescription", Kind::Text, Page::General, L"", L"A short description of the configuration"},
    {Control::lblXMLType, L"lblXMLType", Kind::Label, Page::General, L"Vendor Format", L""},
    {Control::cmbVendorType, L"cmbVendorType", Kind::List, Page::General, L"", L"Sets the format to be used when mapping the requests and responses"},
    {Control::lblCustomConfigOptions, L"lblCustomConfigOptions", Kind::Heading, Page::General, L"Custom Config Options", L""},
    {Control::lblConfigurationFile, L"lblConfigurationFile", Kind::Label, Page::General, L"XML Configuration File", L""},
    {Control::cmbXMLConfugrationFile, L"cmbXMLConfugrationFile", Kind::List, Page::General, L"", L"Sets the XML configuration file to be used to map the dictation and integration fields"},
    {Control::lblMicOptions, L"lblMicOptions", Kind::Heading, Page::General, L"SpeechMike Options", L""},
    {Control::lblPACSInsOvr, L"lblPACSInsOvr", Kind::Label, Page::General, L"Confirm Start Integration", L""},
    {Control::cmbStartPACS, L"cmbStartPACS", Kind::List, Page::General, L"", L"Sets the SpeechMike button to be used to begin monitoring for a request from the integration"},
    {Control::lblManualEntryTrigger, L"lblManualEntryTrigger", Kind::Label, Page::General, L"Switch To Manual Entry", L""},
    {Control::cmbManualEntry, L"cmbManualEntry", Kind::List, Page::General, L"", L"Sets the SpeechMike button to be used when choosing to skip the integration request and switch to manual entry"},
    {Control::lblPollingOptions, L"lblPollingOptions", Kind::Heading, Page::General, L"Polling Options", L""},
    {Control::lblPolling, L"lblPolling", Kind::Label, Page::General, L"Polling Behavior", L""},
    {Control::cmbPollingOption, L"cmbPollingOption", Kind::List, Page::General, L"", L"Sets whether to check for a new integration message with a different subject ID while the user is in a job that was started via an integration"},
    {Control::Label1, L"Label1", Kind::Label, Page::General, L"Polling Action", L""},
    {Control::cmbPollingAction, L"cmbPollingAction", Kind::List, Page::General, L"", L"Sets whether to prompt the user when a new message is received from the integration or to automatically perform some action"},
    {Control::Label6, L"Label6", Kind::Label, Page::General, L"Polling Display Field", L""},
    {Control::cmbPollingDisplayField, L"cmbPollingDisplayField", Kind::List, Page::General, L"", L"Sets which dictation field to display when showing messages about different studies"},
    {Control::labPort, L"labPort", Kind::Label, Page::General, L"Port", L""},
    {Control::txtPort, L"txtPort", Kind::Text, Page::General, L"", L"TCP/IP port to listen for a connection from the integration.  The system to be integrated must be configured with the same port."},
    {Control::lblRequestOptions, L"lblRequestOptions", Kind::Heading, Page::Request, L"Request Options", L""},
    {Control::lblRequestFileName, L"lblRequestFileName", Kind::Label, Page::Request, L"Request File Path and Name", L""},
    {Control::txtRequestFileName, L"txtRequestFileName", Kind::Text, Page::Request, L"c:\\pacs\\request.xml", L"Sets the path and file name of the request file"},
    {Control::lblReqPassword, L"lblReqPassword", Kind::Label, Page::Request, L"Password Options", L""},
    {Control::cmbRequestPassword, L"cmbRequestPassword", Kind::List, Page::Request, L"", L"Sets the password option for the request"},
    {Control::chkRequestDefaultText, L"chkRequestDefaultText", Kind::Check, Page::Request, L"Insert default report text provided in Textfield parameter", L"Determines whether or not the default report text in the Textfield parameter from the integrated system is inserted into a report"},
    {Control::chkPreProcessFile, L"chkPreProcessFile", Kind::Check, Page::Request, L"Perform preprocess of XML request file", L"Determines if preliminary processing should be performed on an XML request file.  This feature also requires configuration of the prompt script."},
    {Control::chkCheckFileDateTime, L"chkCheckFileDateTime", Kind::Check, Page::Request, L"Use Date/Time stamp to determine new request file", L"Determines if the date/time stamp of an XML request file is used instead of the contents to determine if the file is new or not. If enabled, the request file will not be deleted after it is read."},
    {Control::chkDeleteFlag, L"chkDeleteFlag", Kind::Check, Page::Request, L"Delete pre-existing request file during application startup", L"Determines if a pre-existing XML request file should be deleted or not when launching Corvane Expert. If the setting to use the date/time stamp is also enabled, a pre-existing request file will be ignored instead of deleted."},
    {Control::lblLogonOptions, L"lblLogonOptions", Kind::Heading, Page::Request, L"Login Options", L""},
    {Control::chkUserLogon, L"chkUserLogon", Kind::Check, Page::Request, L"Enable User Logon Mapping", L"Toggles the use of logon mapping"},
    {Control::lblUserLogonPACS, L"lblUserLogonPACS", Kind::Heading, Page::Request, L"Integrated System", L""},
    {Control::SSPanel2, L"SSPanel2", Kind::Panel, Page::Request, L"", L"", L"Integrated System"},
    {Control::radLogonMapPACS_0, L"radLogonMapPACS_0", Kind::Option, Page::Request, L"UserName", L"Integrated System UserName", L"Integrated System UserName"},
    {Control::radLogonMapPACS_1, L"radLogonMapPACS_1", Kind::Option, Page::Request, L"UserID", L"Integrated System UserID", L"Integrated System UserID"},
    {Control::lblMapsTo, L"lblMapsTo", Kind::Label, Page::Request, L"Maps To", L""},
    {Control::lblUserLogonCorvane, L"lblUserLogonCorvane", Kind::Heading, Page::Request, L"Corvane", L""},
    {Control::SSPanel3, L"SSPanel3", Kind::Panel, Page::Request, L"", L"", L"Corvane"},
    {Control::radLogonMapCorvane_0, L"radLogonMapCorvane_0", Kind::Option, Page::Request, L"User Name", L"Corvane User Name", L"Corvane User Name"},
    {Control::radLogonMapCorvane_1, L"radLogonMapCorvane_1", Kind::Option, Page::Request, L"MIS Number", L"Corvane MIS Number", L"Corvane MIS Number"},
    {Control::radLogonMapCorvane_2, L"radLogonMapCorvane_2", Kind::Option, Page::Request, L"Dictation ID", L"Corvane Dictation ID", L"Corvane Dictation ID"},
    {Control::chkResponseEnabled, L"chkResponseEnabled", Kind::Check, Page::Response, L"Enable Response Options", L"Toggles whether or not a response file will be written"},
    {Control::lblResponseType, L"lblResponseType", Kind::Label, Page::Response, L"Response Type", L""},
    {Control::cmbResponseType, L"cmbResponseType", Kind::List, Page::Response, L"", L"Sets the type of response to send"},
    {Control::lblResponseFileName, L"lblResponseFileName", Kind::Label, Page::Response, L"Response File Path and Name", L""},
    {Control::txtResponseFileName, L"txtResponseFileName", Kind::Text, Page::Response, L"c:\\pacs\\response.xml", L"Sets the path and file name of the response file"},
    {Control::lblAddressHint, L"lblAddressHint", Kind::Label, Page::Response, L"Use {#} to map to a system field, {AF} to map to an Applicable Field below.", L""},
    {Control::lblApplicableFields, L"lblApplicableFields", Kind::Label, Page::Response, L"Applicable Fields", L""},
    {Control::txtApplicableFields, L"txtApplicableFields", Kind::Text, Page::Response, L"", L"Set the applicable system field number(s) here.  A message will be sent for each valid Applicable Field that is populated."},
    {Control::lblHintApplicable, L"lblHintApplicable", Kind::Label, Page::Response, L"Separate multiple fields with a comma. Leave blank if not using {AF} and if a single message should always be sent.", L""},
    {Control::lblResponsePassword, L"lblResponsePassword", Kind::Label, Page::Response, L"Password Options", L""},
    {Control::cmbResPassword, L"cmbResPassword", Kind::List, Page::Response, L"", L"Sets the password option for the response"},
    {Control::lblSendResponseFor, L"lblSendResponseFor", Kind::Heading, Page::Response, L"Send Response For...", L""},
    {Control::lblStatus, L"lblStatus", Kind::Heading, Page::Response, L"Status To Be Sent", L""},
    {Control::chkCompleted, L"chkCompleted", Kind::Check, Page::Response, L"Finished Jobs", L""},
    {Control::txtFinishedStatus, L"txtFinishedStatus", Kind::Text, Page::Response, L"Finished", L"", L"Status To Be Sent: Finished Jobs"},
    {Control::chkPaused, L"chkPaused", Kind::Check, Page::Response, L"Paused Jobs", L"Enables a response to be sent for paused jobs"},
    {Control::txtPausedStatus, L"txtPausedStatus", Kind::Text, Page::Response, L"Paused", L"", L"Status To Be Sent: Paused Jobs"},
    {Control::chkAborted, L"chkAborted", Kind::Check, Page::Response, L"Aborted Jobs", L"Enables a response to be sent for aborted jobs"},
    {Control::txtAbortedStatus, L"txtAbortedStatus", Kind::Text, Page::Response, L"Aborted", L"", L"Status To Be Sent: Aborted Jobs"},
    {Control::chkNonPACS, L"chkNonPACS", Kind::Check, Page::Response, L"Non-Integration Jobs", L"Enables a response to be sent for non-integration related jobs"},
    {Control::txtNonPACS, L"txtNonPACS", Kind::Text, Page::Response, L"Finished", L"", L"Status To Be Sent: Non-Integration Jobs"},
    {Control::chkUpdateXMLData, L"chkUpdateXMLData", Kind::Check, Page::Response, L"Update field demographic data passed in response.  If not checked the same information received will be returned in the response.", L"This setting is most applicable for multiple accessions.  It affects whether all accessions are written to the response or just those with HIS/RIS matches."},
    {Control::chkSendAbortForCanceledOpen, L"chkSendAbortForCanceledOpen", Kind::Check, Page::Response, L"Send abort response for jobs that were cancelled or failed to initiate", L"Send abort response for jobs that were cancelled or failed to initiate so that the integrated vendor knows that the user is not in a job"},
    {Control::chkResponseReportText, L"chkResponseReportText", Kind::Check, Page::Response, L"Send report text back in Textfield parameter", L"Determines whether or not the current report text is sent back to the integrated system in the Textfield parameter"},
    {Control::Label4, L"Label4", Kind::Heading, Page::ContextChanges, L"Integration Context Changes", L""},
    {Control::chkEnableContextPolling, L"chkEnableContextPolling", Kind::Check, Page::ContextChanges, L"Enable Context Change Polling", L"Enables polling for context changes from the integration"},
    {Control::Label5, L"Label5", Kind::Label, Page::ContextChanges, L"Context Change Action", L""},
    {Control::cmbContextChangeOption, L"cmbContextChangeOption", Kind::List, Page::ContextChanges, L"", L"Action to be taken when a context change has been received"},
    {Control::lblContextChangeXML, L"lblContextChangeXML", Kind::Label, Page::ContextChanges, L"Context Change XML File Path and Name", L""},
    {Control::txtContextXML, L"txtContextXML", Kind::Text, Page::ContextChanges, L"", L"Sets the path and file name of the request file"},
    {Control::Label8, L"Label8", Kind::Label, Page::ContextChanges, L"Multiple Accession Context Change Handling", L""},
    {Control::optMultiAccessionHandlingOption_2, L"optMultiAccessionHandlingOption_2", Kind::Option, Page::ContextChanges, L"Accession numbers received in multiple dictation fields", L"", L"Multiple Accession Context Change Handling: Accession numbers received in multiple dictation fields"},
    {Control::optMultiAccessionHandlingOption_1, L"optMultiAccessionHandlingOption_1", Kind::Option, Page::ContextChanges, L"Accession numbers received concatenated in one dictation field (SubjectID)", L"", L"Multiple Accession Context Change Handling: Accession numbers received concatenated in one dictation field (SubjectID)"},
    {Control::optMultiAccessionHandlingOption_0, L"optMultiAccessionHandlingOption_0", Kind::Option, Page::ContextChanges, L"None (Multiple Accessions are not supported in this configuration)", L"", L"Multiple Accession Context Change Handling: None (Multiple Accessions are not supported in this configuration)"},
    {Control::Label7, L"Label7", Kind::Label, Page::ContextChanges, L"Accession Dictation Fields", L""},
    {Control::cmpAccessionFields, L"cmpAccessionFields", Kind::TickList, Page::ContextChanges, L"", L""},
    {Control::Label2, L"Label2", Kind::Heading, Page::ContextChanges, L"Corvane Expert Context Changes", L""},
    {Control::Label3, L"Label3", Kind::Label, Page::ContextChanges, L"Send Context Update for", L""},
    {Control::cmbContextUpdate, L"cmbContextUpdate", Kind::List, Page::ContextChanges, L"", L"When set, Corvane Expert sends a message to the configured integrated system to adjust the context of the integrated system to the order that was opened in Corvane Expert"},
    {Control::chkCloseDictation, L"chkCloseDictation", Kind::Check, Page::CloseDictation, L"Enable Close Dictation Polling", L"Enables polling for close dictation requests from the integration"},
    {Control::Label9, L"Label9", Kind::Label, Page::CloseDictation, L"Close Dictation XML File Path and Name", L""},
    {Control::txtCloseDictation, L"txtCloseDictation", Kind::Text, Page::CloseDictation, L"", L"Sets the path and file name of the request file"},
    {Control::Label10, L"Label10", Kind::Label, Page::CloseDictation, L"Close Dictation Action", L""},
    {Control::cmbCloseDictationAction, L"cmbCloseDictationAction", Kind::List, Page::CloseDictation, L"", L"Sets whether to prompt the user when a close dictation request is received from the integration or to automatically perform some action"},
}};
// clang-format on

constexpr bool controlsAreInEnumeratorOrder() {
  for (std::size_t i = 0; i < kControls.size(); ++i) {
    if (kControls[i].control != static_cast<Control>(i)) return false;
  }
  return true;
}
static_assert(controlsAreInEnumeratorOrder());

constexpr PageDesign kPages[] = {
    {Page::General, L"&General"},
    {Page::Request, L"Re&quest"},
    {Page::Response, L"&Response"},
    {Page::ContextChanges, L"&Context Changes"},
    {Page::CloseDictation, L"C&lose Dictation"},
};

}  // namespace

std::span<const ControlDesign, kControlCount> controls() { return kControls; }

const ControlDesign& design(Control control) {
  return kControls[static_cast<std::size_t>(control)];
}

std::span<const PageDesign> pages() { return kPages; }

}  // namespace tlpacscfg
