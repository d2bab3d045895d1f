#include "config/summary_texts.h"

#include <algorithm>

#include "config/option_tables.h"
#include "support/conversions.h"
#include "support/text.h"

namespace tlpacscfg {
namespace {

constexpr const wchar_t* kUnknown = L"<Unknown>";

/// Null for a code that is not in the table.
const wchar_t* find(CodeTable table, std::int16_t code) {
  const auto found = std::ranges::find(table, code, &Option::code);
  if (found == table.end()) return nullptr;
  return found->summaryText ? found->summaryText : found->text;
}

std::wstring wordsOf(CodeTable table, std::int16_t code, const wchar_t* otherwise = kUnknown) {
  const wchar_t* const text = find(table, code);
  return text ? text : otherwise;
}

}  // namespace

std::wstring GetPACSTypeText(std::int16_t code) { return wordsOf(kVendorFormats, code); }

std::wstring GetStartTriggerText(std::int16_t code) { return wordsOf(kMicrophoneButtons, code); }

std::wstring GetManualEntryTriggerText(std::int16_t code) { return GetStartTriggerText(code); }

std::wstring GetUserMappingText(std::int16_t code) { return wordsOf(kUserMappings, code); }

std::wstring GetRequestPasswordText(std::int16_t code) { return wordsOf(kRequestPasswords, code); }

std::wstring GetResponsePasswordText(std::int16_t code) {
  return wordsOf(kResponsePasswords, code);
}

std::wstring GetPollingOptionText(std::int16_t code) { return wordsOf(kPollingOptions, code); }

std::wstring GetPollingActionText(std::int16_t code) { return wordsOf(kPollingActions, code); }

std::wstring GetContextUpdateText(std::int16_t code) { return wordsOf(kContextUpdates, code); }

std::wstring GetContextChangeText(std::int16_t code) {
  const wchar_t* const text = find(kContextChanges, code);
  return text ? text : std::wstring(kUnknown) + L" - " + decimal(code);
}

std::wstring GetDictationFieldText(std::int16_t code) {
  const wchar_t* const name = find(kDictationFields, code);
  return name ? decimal(code) + L" - " + name : std::wstring();
}

std::wstring GetMultiAccessText(std::int16_t code) { return wordsOf(kMultiAccess, code, L""); }

std::wstring GetCloseDictationActionText(std::int16_t code) {
  return wordsOf(kCloseDictationActions, code, L"");
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
  const wchar_t* const type = find(kResponseTypes, responseType);
  if (!type) return {};
  const std::wstring line = summaryLine(L" Response Type:", type);
  if (responseType == response::kXmlFile) {
    return line + summaryLine(L" Response File Name:", responseTemplate);
  }
  const bool url = responseType == response::kUrl;
  return line + summaryLine(url ? L" URL Template:" : L" HL7 Template:", responseTemplate) +
         summaryLine(L" Applicable CV Fields:", fields);
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
