#include "config/option_texts.h"

#include <algorithm>

#include "support/conversions.h"
#include "support/text.h"

namespace tlpacscfg {
namespace {

struct OptionText {
  std::int16_t code;
  const wchar_t* text;
};

constexpr const wchar_t* kUnknown = L"<Unknown>";

constexpr OptionText kPacsTypes[] = {
    {0, L"<None>"},         {1, L"Standard - XML"}, {2, L"GE - XML"},
    {3, L"McKesson - XML"}, {4, L"COM - Broker"},   {5, L"COM - Broker Extended"},
    {7, L"Custom - XML"},   {8, L"TCP/IP Message"}, {9, L"McKesson (HMI RC) - XML"},
};

constexpr OptionText kTriggers[] = {{0, L"<None>"}, {8, L"INS/OVWR"}, {10, L"EOL"}};

constexpr OptionText kUserMappings[] = {
    {0, L"<None>"},
    {1, L"PACS User Name --> CV User Name"},
    {2, L"PACS User Name --> CV MIS Number"},
    {3, L"PACS User Name --> CV Dictation ID"},
    {4, L"PACS User ID --> CV User Name"},
    {5, L"PACS User ID --> CV MIS Number"},
    {6, L"PACS User ID--> CV Dictation ID"},
};

constexpr OptionText kRequestPasswords[] = {
    {0, L"Login User Without Password"},
    {1, L"Validate Received Password"},
    {2, L"Auto Synch Password"},
};

constexpr OptionText kResponsePasswords[] = {
    {0, L"Return Received Password"},
    {1, L"Do Not Send Password"},
    {2, L"Send Corvane Password"},
};

constexpr OptionText kPollingOptions[] = {{0, L"No Polling"}, {1, L"Enable Polling"}};

constexpr OptionText kPollingActions[] = {
    {0, L"Always Prompt"},
    {1, L"Send Voice Only Jobs to MT, Abort Blank Jobs, Prompt All Others"},
    {2, L"Send Voice Only Jobs to MT, Prompt All Others"},
};

constexpr OptionText kContextUpdates[] = {
    {0, L"No Jobs"},
    {5, L"Reloading PACS Initiated Pending/Paused Jobs"},
    {10, L"All Jobs (Including Manual Entry Jobs)"},
};

constexpr OptionText kContextChanges[] = {
    {0, L"No Polling"},
    {10, L"Do Not Warn"},
    {20, L"Warn when receiving context change"},
    {30, L"Warn when start recording and PACS on different context"},
    {35, L"Prompt for action when start recording and PACS is on different context"},
    {40, L"Warn when ending report and PACS is on different context"},
    {45, L"Prompt for action when ending report and PACS is on different context"},
};

constexpr OptionText kDictationFields[] = {
    {1, L" - Subject ID"},       {6, L" - Source Physician ID"},
    {7, L" - Patient ID"},       {8, L" - Patient ID Alt"},
    {9, L" - Visit ID"},         {10, L" - Order ID"},
    {11, L" - Accession ID"},    {12, L" - Department"},
    {13, L" - Location"},        {15, L" - User Defined 1"},
    {16, L" - User Defined 2"},  {17, L" - User Defined 3"},
    {18, L" - User Defined 4"},  {19, L" - User Defined 5"},
    {20, L" - User Defined 6"},  {21, L" - User Defined 7"},
    {22, L" - User Defined 8"},  {23, L" - User Defined 9"},
    {24, L" - User Defined 10"}, {27, L" - Account"},
};

constexpr OptionText kMultiAccess[] = {
    {0, L"None (Multiple Accessions are not supported in this configuration)"},
    {1, L"Accession numbers received concatenated in one dictation field (SubjectID)"},
    {2, L"Accession numbers received in multiple dictation fields"},
};

constexpr OptionText kCloseDictationActions[] = {
    {0, L"Always Prompt"},
    {2, L"Do Something 2"},
    {10, L"Abort Blank Jobs, Prompt All Others"},
};

/// Nothing for a code that is not in the list.
const wchar_t* find(std::span<const OptionText> list, std::int16_t code) {
  const auto found = std::find_if(list.begin(), list.end(),
                                  [code](const OptionText& option) { return option.code == code; });
  return found == list.end() ? nullptr : found->text;
}

std::wstring textOr(const wchar_t* otherwise, std::span<const OptionText> list, std::int16_t code) {
  const wchar_t* const text = find(list, code);
  return text ? text : otherwise;
}

}  // namespace

std::wstring GetPACSTypeText(std::int16_t code) { return textOr(kUnknown, kPacsTypes, code); }

std::wstring GetStartTriggerText(std::int16_t code) { return textOr(kUnknown, kTriggers, code); }

std::wstring GetManualEntryTriggerText(std::int16_t code) { return GetStartTriggerText(code); }

std::wstring GetUserMappingText(std::int16_t code) { return textOr(kUnknown, kUserMappings, code); }

std::wstring GetRequestPasswordText(std::int16_t code) {
  return textOr(kUnknown, kRequestPasswords, code);
}

std::wstring GetResponsePasswordText(std::int16_t code) {
  return textOr(kUnknown, kResponsePasswords, code);
}

std::wstring GetPollingOptionText(std::int16_t code) {
  return textOr(kUnknown, kPollingOptions, code);
}

std::wstring GetPollingActionText(std::int16_t code) {
  return textOr(kUnknown, kPollingActions, code);
}

std::wstring GetContextUpdateText(std::int16_t code) {
  return textOr(kUnknown, kContextUpdates, code);
}

std::wstring GetContextChangeText(std::int16_t code) {
  const wchar_t* const text = find(kContextChanges, code);
  return text ? text : std::wstring(kUnknown) + L" - " + decimal(code);
}

std::wstring GetDictationFieldText(std::int16_t code) {
  const wchar_t* const name = find(kDictationFields, code);
  return name ? decimal(code) + name : std::wstring();
}

std::wstring GetMultiAccessText(std::int16_t code) { return textOr(L"", kMultiAccess, code); }

std::wstring GetCloseDictationActionText(std::int16_t code) {
  return textOr(L"", kCloseDictationActions, code);
}

std::wstring GetFieldListText(std::wstring_view list) {
  std::wstring text;
  bool first = true;
  for (const std::wstring_view item : split(list, L',')) {
    if (!first) text += L", ";
    text += GetDictationFieldText(toInt16(trimBlanks(item)));
    first = false;
  }
  return text;
}

std::wstring GetResponseTypeLines(std::int16_t responseType, std::wstring_view responseTemplate,
                                  std::wstring_view fields) {
  switch (responseType) {
    case 0:
      return summaryLine(L" Response Type:", L"XML File") +
             summaryLine(L" Response File Name:", responseTemplate);
    case 1:
      return summaryLine(L" Response Type:", L"URL Sent") +
             summaryLine(L" URL Template:", responseTemplate) +
             summaryLine(L" Applicable CV Fields:", fields);
    case 2:
      return summaryLine(L" Response Type:", L"Corvane Gate HL7") +
             summaryLine(L" HL7 Template:", responseTemplate) +
             summaryLine(L" Applicable CV Fields:", fields);
    default:
      return {};
  }
}

std::wstring summaryLine(std::wstring_view label, std::wstring_view value) {
  constexpr std::size_t kLabelWidth = 32;
  std::wstring line(label);
  line.resize(kLabelWidth, L' ');
  return line.append(value).append(kLineBreak);
}

bool IsAllDigits(std::wstring_view text) {
  return !text.empty() && text.find_first_not_of(L"0123456789") == text.npos;
}

bool IsInArray(std::int16_t value, std::span<const std::int16_t> list) {
  return std::find(list.begin(), list.end(), value) != list.end();
}

}  // namespace tlpacscfg
