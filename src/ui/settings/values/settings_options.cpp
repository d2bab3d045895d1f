#include "ui/settings/values/settings_options.h"

namespace tlpacscfg {
namespace {

constexpr Option kVendorFormats[] = {
    {L"<None>", 0},
    {L"Standard - XML", 1},
    {L"GE - XML", vendor::kGe},
    {L"McKesson - XML", 3},
    {L"McKesson (HMI RC) - XML", vendor::kHmi},
    {L"Custom - XML", vendor::kCustom},
    {L"COM - Broker", vendor::kBroker},
    {L"COM - Broker Extended", vendor::kBrokerExtended},
    {L"TCP/IP Message", vendor::kTcpIp},
};

constexpr Option kMicrophoneButtons[] = {{L"<None>", 0}, {L"EOL", 10}, {L"INS/OVWR", 8}};

constexpr Option kResponseTypes[] = {
    {L"XML File", response::kXmlFile},
    {L"URL Sent", response::kUrl},
    {L"Corvane Gate HL7", response::kHl7},
};

constexpr Option kPollingOptions[] = {{L"No Polling", 0}, {L"Enable Polling", 1}};

constexpr Option kPollingActions[] = {
    {L"Always Prompt", 0},
    {L"Send Voice Only Jobs to MT, Abort Blank Jobs, Prompt All Others", 1},
    {L"Send Voice Only Jobs to MT, Prompt All Others", 2},
};

constexpr Option kContextChangeOptions[] = {
    {L"Do not warn", 10},
    {L"Warn when receiving context change", 20},
    {L"Warn when start recording and PACS is on different context", 30},
    {L"Prompt for action when start recording and PACS is on different context", 35},
    {L"Warn when ending report and PACS is on different context", 40},
    {L"Prompt for action when ending report and PACS is on different context", 45},
};

constexpr Option kDictationFields[] = {
    {L"Accession ID", 11},    {L"Account", 27},
    {L"Department", 12},      {L"Location", 13},
    {L"Order ID", 10},        {L"Patient ID", 7},
    {L"Patient ID Alt", 8},   {L"Source Physician ID", 6},
    {L"Subject ID", 1},       {L"User Defined 1", 15},
    {L"User Defined 2", 16},  {L"User Defined 3", 17},
    {L"User Defined 4", 18},  {L"User Defined 5", 19},
    {L"User Defined 6", 20},  {L"User Defined 7", 21},
    {L"User Defined 8", 22},  {L"User Defined 9", 23},
    {L"User Defined 10", 24}, {L"Visit ID", 9},
};
static_assert(std::size(kDictationFields) == kDictationFieldCount);

constexpr Option kCloseDictationActions[] = {
    {L"Always Prompt", 0},
    {L"Abort Blank Jobs, Prompt All Others", 10},
};

constexpr Option kRequestPasswords[] = {
    {L"Login User Without Password", 0},
    {L"Validate Received Password", 1},
    {L"Auto Synch Password", 2},
};

constexpr Option kResponsePasswords[] = {
    {L"Return Received Password", 0},
    {L"Do Not Send Password", 1},
    {L"Send Corvane Password", 2},
};

constexpr Option kContextUpdates[] = {
    {L"No Jobs", 0},
    {L"Reloading PACS Initiated Pending/Paused Jobs", 5},
    {L"All Jobs (Including Manual Entry Jobs)", 10},
};

}  // namespace

std::span<const Option> dictationFields() { return kDictationFields; }

std::span<const Option> optionsOf(Control control) {
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
      return kContextChangeOptions;
    case Control::cmbPollingDisplayField:
    case Control::cmpAccessionFields:
      return kDictationFields;
    case Control::cmbCloseDictationAction:
      return kCloseDictationActions;
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
