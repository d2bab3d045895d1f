#pragma once

#include <cstdint>
#include <vector>

#include "ui/settings/values/settings_controls.h"

/// The expected content of the settings window, independent of the tables that define it.
namespace tlpacscfg::test {

struct ExpectedControl {
  const wchar_t* name;
  Kind kind;
  Page page;
  const wchar_t* text;  ///< Null: any text.
  const wchar_t* tooltip;
};

struct ExpectedEntry {
  const wchar_t* text;
  std::int16_t code;
};

struct ExpectedList {
  const wchar_t* control;
  std::vector<ExpectedEntry> entries;
};

inline constexpr const wchar_t* kExpectedTabs[] = {L"&General", L"Re&quest", L"&Response",
                                                   L"&Context Changes", L"C&lose Dictation"};

// clang-format off
inline constexpr ExpectedControl kExpectedControls[] = {
    {L"lblConfig", Kind::Label, Page::Window, L"Integration Configurations", L""},
    {L"lvwConfigs", Kind::ListView, Page::Window, L"", L""},
    {L"btnNew", Kind::Button, Page::Window, L"&New", L"Initiate the setup of a new configuration"},
    {L"btnSave", Kind::Button, Page::Window, L"&Save", L"Save the changes for the currently selected configuration"},
    {L"btnDelete", Kind::Button, Page::Window, L"&Delete", L"Delete the currently selected configuration"},
    {L"btnExit", Kind::Button, Page::Window, L"&Exit", L"Exit Corvane Expert Integration Settings dialog"},
    {L"SSPACSOptions", Kind::Tabs, Page::Window, L"", L""},
    {L"lblGeneralOptions", Kind::Heading, Page::General, L"General Integration Options", L""},
    {L"lblDescription", Kind::Label, Page::General, L"Description", L""},
    {L"txtDescription", Kind::Text, Page::General, L"", L"A short description of the configuration"},
    {L"lblXMLType", Kind::Label, Page::General, L"Vendor Format", L""},
    {L"cmbVendorType", Kind::List, Page::General, L"", L"Sets the format to be used when mapping the requests and responses"},
    {L"lblConfigurationFile", Kind::Label, Page::General, L"XML Configuration File", L""},
    {L"cmbXMLConfugrationFile", Kind::List, Page::General, L"", L"Sets the XML configuration file to be used to map the dictation and integration fields"},
    {L"lblCustomConfigOptions", Kind::Heading, Page::General, L"Custom Config Options", L""},
    {L"lblMicOptions", Kind::Heading, Page::General, L"SpeechMike Options", L""},
    {L"lblPACSInsOvr", Kind::Label, Page::General, L"Confirm Start Integration", L""},
    {L"cmbStartPACS", Kind::List, Page::General, L"", L"Sets the SpeechMike button to be used to begin monitoring for a request from the integration"},
    {L"lblManualEntryTrigger", Kind::Label, Page::General, L"Switch To Manual Entry", L""},
    {L"cmbManualEntry", Kind::List, Page::General, L"", L"Sets the SpeechMike button to be used when choosing to skip the integration request and switch to manual entry"},
    {L"lblPollingOptions", Kind::Heading, Page::General, L"Polling Options", L""},
    {L"lblPolling", Kind::Label, Page::General, L"Polling Behavior", L""},
    {L"cmbPollingOption", Kind::List, Page::General, L"", L"Sets whether to check for a new integration message with a different subject ID while the user is in a job that was started via an integration"},
    {L"Label1", Kind::Label, Page::General, L"Polling Action", L""},
    {L"cmbPollingAction", Kind::List, Page::General, L"", L"Sets whether to prompt the user when a new message is received from the integration or to automatically perform some action"},
    {L"Label6", Kind::Label, Page::General, L"Polling Display Field", L""},
    {L"cmbPollingDisplayField", Kind::List, Page::General, L"", L"Sets which dictation field to display when showing messages about different studies"},
    {L"labPort", Kind::Label, Page::General, L"Port", L""},
    {L"txtPort", Kind::Text, Page::General, L"", L"TCP/IP port to listen for a connection from the integration.  The system to be integrated must be configured with the same port."},
    {L"lblRequestOptions", Kind::Heading, Page::Request, L"Request Options", L""},
    {L"lblRequestFileName", Kind::Label, Page::Request, L"Request File Path and Name", L""},
    {L"txtRequestFileName", Kind::Text, Page::Request, L"c:\\pacs\\request.xml", L"Sets the path and file name of the request file"},
    {L"lblReqPassword", Kind::Label, Page::Request, L"Password Options", L""},
    {L"cmbRequestPassword", Kind::List, Page::Request, L"", L"Sets the password option for the request"},
    {L"chkRequestDefaultText", Kind::Check, Page::Request, L"Insert default report text provided in Textfield parameter", L"Determines whether or not the default report text in the Textfield parameter from the integrated system is inserted into a report"},
    {L"chkPreProcessFile", Kind::Check, Page::Request, L"Perform preprocess of XML request file", L"Determines if preliminary processing should be performed on an XML request file.  This feature also requires configuration of the prompt script."},
    {L"chkCheckFileDateTime", Kind::Check, Page::Request, L"Use Date/Time stamp to determine new request file", L"Determines if the date/time stamp of an XML request file is used instead of the contents to determine if the file is new or not. If enabled, the request file will not be deleted after it is read."},
    {L"chkDeleteFlag", Kind::Check, Page::Request, L"Delete pre-existing request file during application startup", L"Determines if a pre-existing XML request file should be deleted or not when launching Corvane Expert. If the setting to use the date/time stamp is also enabled, a pre-existing request file will be ignored instead of deleted."},
    {L"lblLogonOptions", Kind::Heading, Page::Request, L"Login Options", L""},
    {L"chkUserLogon", Kind::Check, Page::Request, L"Enable User Logon Mapping", L"Toggles the use of logon mapping"},
    {L"lblUserLogonPACS", Kind::Heading, Page::Request, L"Integrated System", L""},
    {L"lblMapsTo", Kind::Label, Page::Request, L"Maps To", L""},
    {L"lblUserLogonCorvane", Kind::Heading, Page::Request, L"Corvane", L""},
    {L"SSPanel2", Kind::Panel, Page::Request, L"", L""},
    {L"radLogonMapPACS_0", Kind::Option, Page::Request, L"UserName", L"Integrated System UserName"},
    {L"radLogonMapPACS_1", Kind::Option, Page::Request, L"UserID", L"Integrated System UserID"},
    {L"SSPanel3", Kind::Panel, Page::Request, L"", L""},
    {L"radLogonMapCorvane_0", Kind::Option, Page::Request, L"User Name", L"Corvane User Name"},
    {L"radLogonMapCorvane_1", Kind::Option, Page::Request, L"MIS Number", L"Corvane MIS Number"},
    {L"radLogonMapCorvane_2", Kind::Option, Page::Request, L"Dictation ID", L"Corvane Dictation ID"},
    {L"chkResponseEnabled", Kind::Check, Page::Response, L"Enable Response Options", L"Toggles whether or not a response file will be written"},
    {L"lblResponseType", Kind::Label, Page::Response, L"Response Type", L""},
    {L"cmbResponseType", Kind::List, Page::Response, L"", L"Sets the type of response to send"},
    {L"lblResponseFileName", Kind::Label, Page::Response, L"Response File Path and Name", L""},
    {L"txtResponseFileName", Kind::Text, Page::Response, L"c:\\pacs\\response.xml", L"Sets the path and file name of the response file"},
    {L"lblAddressHint", Kind::Label, Page::Response, L"Use {#} to map to a system field, {AF} to map to an Applicable Field below.", L""},
    {L"lblApplicableFields", Kind::Label, Page::Response, L"Applicable Fields", L""},
    {L"txtApplicableFields", Kind::Text, Page::Response, L"", L"Set the applicable system field number(s) here.  A message will be sent for each valid Applicable Field that is populated."},
    {L"lblHintApplicable", Kind::Label, Page::Response, L"Separate multiple fields with a comma. Leave blank if not using {AF} and if a single message should always be sent.", L""},
    {L"lblResponsePassword", Kind::Label, Page::Response, L"Password Options", L""},
    {L"cmbResPassword", Kind::List, Page::Response, L"", L"Sets the password option for the response"},
    {L"lblSendResponseFor", Kind::Heading, Page::Response, L"Send Response For...", L""},
    {L"chkPaused", Kind::Check, Page::Response, L"Paused Jobs", L"Enables a response to be sent for paused jobs"},
    {L"chkAborted", Kind::Check, Page::Response, L"Aborted Jobs", L"Enables a response to be sent for aborted jobs"},
    {L"chkNonPACS", Kind::Check, Page::Response, L"Non-Integration Jobs", L"Enables a response to be sent for non-integration related jobs"},
    {L"chkCompleted", Kind::Check, Page::Response, L"Finished Jobs", L""},
    {L"lblStatus", Kind::Heading, Page::Response, L"Status To Be Sent", L""},
    {L"txtFinishedStatus", Kind::Text, Page::Response, nullptr, L""},
    {L"txtPausedStatus", Kind::Text, Page::Response, nullptr, L""},
    {L"txtAbortedStatus", Kind::Text, Page::Response, nullptr, L""},
    {L"txtNonPACS", Kind::Text, Page::Response, nullptr, L""},
    {L"chkUpdateXMLData", Kind::Check, Page::Response, L"Update field demographic data passed in response.  If not checked the same information received will be returned in the response.", L"This setting is most applicable for multiple accessions.  It affects whether all accessions are written to the response or just those with HIS/RIS matches."},
    {L"chkSendAbortForCanceledOpen", Kind::Check, Page::Response, L"Send abort response for jobs that were cancelled or failed to initiate", L"Send abort response for jobs that were cancelled or failed to initiate so that the integrated vendor knows that the user is not in a job"},
    {L"chkResponseReportText", Kind::Check, Page::Response, L"Send report text back in Textfield parameter", L"Determines whether or not the current report text is sent back to the integrated system in the Textfield parameter"},
    {L"Label4", Kind::Heading, Page::ContextChanges, L"Integration Context Changes", L""},
    {L"chkEnableContextPolling", Kind::Check, Page::ContextChanges, L"Enable Context Change Polling", L"Enables polling for context changes from the integration"},
    {L"Label5", Kind::Label, Page::ContextChanges, L"Context Change Action", L""},
    {L"cmbContextChangeOption", Kind::List, Page::ContextChanges, L"", L"Action to be taken when a context change has been received"},
    {L"lblContextChangeXML", Kind::Label, Page::ContextChanges, L"Context Change XML File Path and Name", L""},
    {L"txtContextXML", Kind::Text, Page::ContextChanges, L"", L"Sets the path and file name of the request file"},
    {L"Label8", Kind::Label, Page::ContextChanges, L"Multiple Accession Context Change Handling", L""},
    {L"optMultiAccessionHandlingOption_0", Kind::Option, Page::ContextChanges, L"None (Multiple Accessions are not supported in this configuration)", L""},
    {L"optMultiAccessionHandlingOption_1", Kind::Option, Page::ContextChanges, L"Accession numbers received concatenated in one dictation field (SubjectID)", L""},
    {L"optMultiAccessionHandlingOption_2", Kind::Option, Page::ContextChanges, L"Accession numbers received in multiple dictation fields", L""},
    {L"Label7", Kind::Label, Page::ContextChanges, L"Accession Dictation Fields", L""},
    {L"cmpAccessionFields", Kind::TickList, Page::ContextChanges, L"", L""},
    {L"Label2", Kind::Heading, Page::ContextChanges, L"Corvane Expert Context Changes", L""},
    {L"Label3", Kind::Label, Page::ContextChanges, L"Send Context Update for", L""},
    {L"cmbContextUpdate", Kind::List, Page::ContextChanges, L"", L"When set, Corvane Expert sends a message to the configured integrated system to adjust the context of the integrated system to the order that was opened in Corvane Expert"},
    {L"chkCloseDictation", Kind::Check, Page::CloseDictation, L"Enable Close Dictation Polling", L"Enables polling for close dictation requests from the integration"},
    {L"Label9", Kind::Label, Page::CloseDictation, L"Close Dictation XML File Path and Name", L""},
    {L"txtCloseDictation", Kind::Text, Page::CloseDictation, L"", L"Sets the path and file name of the request file"},
    {L"Label10", Kind::Label, Page::CloseDictation, L"Close Dictation Action", L""},
    {L"cmbCloseDictationAction", Kind::List, Page::CloseDictation, L"", L"Sets whether to prompt the user when a close dictation request is received from the integration or to automatically perform some action"},
};
// clang-format on

/// The accession fields are stored by name; their codes are not used.
inline const std::vector<ExpectedList>& expectedLists() {
  static const std::vector<ExpectedList> lists = {
      {L"cmbVendorType",
       {{L"<None>", 0},
        {L"Standard - XML", 1},
        {L"GE - XML", 2},
        {L"McKesson - XML", 3},
        {L"McKesson (HMI RC) - XML", 9},
        {L"Custom - XML", 7},
        {L"COM - Broker", 4},
        {L"COM - Broker Extended", 5},
        {L"TCP/IP Message", 8}}},
      {L"cmbStartPACS", {{L"<None>", 0}, {L"EOL", 10}, {L"INS/OVWR", 8}}},
      {L"cmbManualEntry", {{L"<None>", 0}, {L"EOL", 10}, {L"INS/OVWR", 8}}},
      {L"cmbResponseType", {{L"XML File", 0}, {L"URL Sent", 1}, {L"Corvane Gate HL7", 2}}},
      {L"cmbPollingOption", {{L"No Polling", 0}, {L"Enable Polling", 1}}},
      {L"cmbPollingAction",
       {{L"Always Prompt", 0},
        {L"Send Voice Only Jobs to MT, Abort Blank Jobs, Prompt All Others", 1},
        {L"Send Voice Only Jobs to MT, Prompt All Others", 2}}},
      {L"cmbContextChangeOption",
       {{L"Do not warn", 10},
        {L"Warn when receiving context change", 20},
        {L"Warn when start recording and PACS is on different context", 30},
        {L"Prompt for action when start recording and PACS is on different context", 35},
        {L"Warn when ending report and PACS is on different context", 40},
        {L"Prompt for action when ending report and PACS is on different context", 45}}},
      {L"cmbPollingDisplayField", {{L"Accession ID", 11},    {L"Account", 27},
                                   {L"Department", 12},      {L"Location", 13},
                                   {L"Order ID", 10},        {L"Patient ID", 7},
                                   {L"Patient ID Alt", 8},   {L"Source Physician ID", 6},
                                   {L"Subject ID", 1},       {L"User Defined 1", 15},
                                   {L"User Defined 2", 16},  {L"User Defined 3", 17},
                                   {L"User Defined 4", 18},  {L"User Defined 5", 19},
                                   {L"User Defined 6", 20},  {L"User Defined 7", 21},
                                   {L"User Defined 8", 22},  {L"User Defined 9", 23},
                                   {L"User Defined 10", 24}, {L"Visit ID", 9}}},
      {L"cmpAccessionFields", {{L"Accession ID", 11},    {L"Account", 27},
                               {L"Department", 12},      {L"Location", 13},
                               {L"Order ID", 10},        {L"Patient ID", 7},
                               {L"Patient ID Alt", 8},   {L"Source Physician ID", 6},
                               {L"Subject ID", 1},       {L"User Defined 1", 15},
                               {L"User Defined 2", 16},  {L"User Defined 3", 17},
                               {L"User Defined 4", 18},  {L"User Defined 5", 19},
                               {L"User Defined 6", 20},  {L"User Defined 7", 21},
                               {L"User Defined 8", 22},  {L"User Defined 9", 23},
                               {L"User Defined 10", 24}, {L"Visit ID", 9}}},
      {L"cmbCloseDictationAction",
       {{L"Always Prompt", 0}, {L"Abort Blank Jobs, Prompt All Others", 10}}},
      {L"cmbRequestPassword",
       {{L"Login User Without Password", 0},
        {L"Validate Received Password", 1},
        {L"Auto Synch Password", 2}}},
      {L"cmbResPassword",
       {{L"Return Received Password", 0},
        {L"Do Not Send Password", 1},
        {L"Send Corvane Password", 2}}},
      {L"cmbContextUpdate",
       {{L"No Jobs", 0},
        {L"Reloading PACS Initiated Pending/Paused Jobs", 5},
        {L"All Jobs (Including Manual Entry Jobs)", 10}}},
  };
  return lists;
}

}  // namespace tlpacscfg::test
