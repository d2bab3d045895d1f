#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <optional>
#include <span>

/// The option codes of a configuration and their texts, for the lists of the settings window and
/// for the summary.
namespace tlpacscfg {

struct Option {
  const wchar_t* text;
  std::int16_t code;
  /// Null where the summary shows the same text.
  const wchar_t* summaryText = nullptr;
  /// Only the summary shows the code; the window does not offer it.
  bool summaryOnly = false;
};

/// The options in the order of the window's list, followed by those that it does not offer.
using CodeTable = std::span<const Option>;

/// The entries of the window's list.
constexpr CodeTable offered(CodeTable table) {
  while (!table.empty() && table.back().summaryOnly) table = table.first(table.size() - 1);
  return table;
}

/// Vendor formats that the rest of the program refers to by code.
namespace vendor {
inline constexpr std::int16_t kGe = 2;
inline constexpr std::int16_t kBroker = 4;
inline constexpr std::int16_t kBrokerExtended = 5;
inline constexpr std::int16_t kCustom = 7;
inline constexpr std::int16_t kTcpIp = 8;
inline constexpr std::int16_t kHmi = 9;
}  // namespace vendor

constexpr bool isBroker(std::optional<std::int16_t> vendorFormat) {
  return vendorFormat == vendor::kBroker || vendorFormat == vendor::kBrokerExtended;
}

/// The formats that map fields with an XML configuration file.
constexpr bool needsXmlFile(std::optional<std::int16_t> vendorFormat) {
  return vendorFormat == vendor::kCustom || vendorFormat == vendor::kHmi;
}

/// Response types; the code is the position in the list.
namespace response {
inline constexpr int kXmlFile = 0;
inline constexpr int kUrl = 1;
inline constexpr int kHl7 = 2;
}  // namespace response

/// There is no code 6.
inline constexpr Option kVendorFormats[] = {
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

inline constexpr Option kMicrophoneButtons[] = {{L"<None>", 0}, {L"EOL", 10}, {L"INS/OVWR", 8}};

/// The window has a box and two groups of options instead of a list. The missing blank of the last
/// text is deliberate.
inline constexpr Option kUserMappings[] = {
    {L"<None>", 0},
    {L"PACS User Name --> CV User Name", 1},
    {L"PACS User Name --> CV MIS Number", 2},
    {L"PACS User Name --> CV Dictation ID", 3},
    {L"PACS User ID --> CV User Name", 4},
    {L"PACS User ID --> CV MIS Number", 5},
    {L"PACS User ID--> CV Dictation ID", 6},
};

/// The stored value is the position in the list, as it is for the response's passwords, the
/// response types and both polling lists.
inline constexpr Option kRequestPasswords[] = {
    {L"Login User Without Password", 0},
    {L"Validate Received Password", 1},
    {L"Auto Synch Password", 2},
};

inline constexpr Option kResponsePasswords[] = {
    {L"Return Received Password", 0},
    {L"Do Not Send Password", 1},
    {L"Send Corvane Password", 2},
};

inline constexpr Option kResponseTypes[] = {
    {L"XML File", response::kXmlFile},
    {L"URL Sent", response::kUrl},
    {L"Corvane Gate HL7", response::kHl7},
};

inline constexpr Option kPollingOptions[] = {{L"No Polling", 0}, {L"Enable Polling", 1}};

inline constexpr Option kPollingActions[] = {
    {L"Always Prompt", 0},
    {L"Send Voice Only Jobs to MT, Abort Blank Jobs, Prompt All Others", 1},
    {L"Send Voice Only Jobs to MT, Prompt All Others", 2},
};

inline constexpr Option kContextUpdates[] = {
    {L"No Jobs", 0},
    {L"Reloading PACS Initiated Pending/Paused Jobs", 5},
    {L"All Jobs (Including Manual Entry Jobs)", 10},
};

/// Two texts differ between the window and the summary, in capitals and in one word. Both are
/// prescribed.
inline constexpr Option kContextChanges[] = {
    {L"Do not warn", 10, L"Do Not Warn"},
    {L"Warn when receiving context change", 20},
    {L"Warn when start recording and PACS is on different context", 30,
     L"Warn when start recording and PACS on different context"},
    {L"Prompt for action when start recording and PACS is on different context", 35},
    {L"Warn when ending report and PACS is on different context", 40},
    {L"Prompt for action when ending report and PACS is on different context", 45},
    // In the window, a box that is not ticked.
    {.text = L"No Polling", .code = 0, .summaryOnly = true},
};

inline constexpr Option kDictationFields[] = {
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
inline constexpr std::size_t kDictationFieldCount = std::size(kDictationFields);

/// The captions of a group of options in the window.
inline constexpr Option kMultiAccess[] = {
    {L"None (Multiple Accessions are not supported in this configuration)", 0},
    {L"Accession numbers received concatenated in one dictation field (SubjectID)", 1},
    {L"Accession numbers received in multiple dictation fields", 2},
};

inline constexpr Option kCloseDictationActions[] = {
    {L"Always Prompt", 0},
    {L"Abort Blank Jobs, Prompt All Others", 10},
    // A placeholder that was never offered.
    {.text = L"Do Something 2", .code = 2, .summaryOnly = true},
};

}  // namespace tlpacscfg
