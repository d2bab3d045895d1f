#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace tlpacscfg {

/// The texts of the option codes. A code without a text gives "<Unknown>" unless said otherwise;
/// none of these fails.
std::wstring GetPACSTypeText(std::int16_t code);
std::wstring GetStartTriggerText(std::int16_t code);
std::wstring GetManualEntryTriggerText(std::int16_t code);
std::wstring GetUserMappingText(std::int16_t code);
std::wstring GetRequestPasswordText(std::int16_t code);
std::wstring GetResponsePasswordText(std::int16_t code);
std::wstring GetPollingOptionText(std::int16_t code);
std::wstring GetPollingActionText(std::int16_t code);
std::wstring GetContextUpdateText(std::int16_t code);
/// "<Unknown> - " and the code for a code without a text.
std::wstring GetContextChangeText(std::int16_t code);
/// The code and its name; empty for a code without a name.
std::wstring GetDictationFieldText(std::int16_t code);
/// Empty for a code without a text.
std::wstring GetMultiAccessText(std::int16_t code);
std::wstring GetCloseDictationActionText(std::int16_t code);

/// The dictation fields of a comma-separated list of codes, joined with ", ".
/// Throws TypeMismatch for an item that is not a number, Overflow for one that does not fit.
std::wstring GetFieldListText(std::wstring_view list);

/// The lines of the summary that depend on the response type; none for an unknown type.
std::wstring GetResponseTypeLines(std::int16_t responseType, std::wstring_view responseTemplate,
                                  std::wstring_view fields);

/// One line of the summary: the label in 32 columns, the value, a line break.
std::wstring summaryLine(std::wstring_view label, std::wstring_view value);

/// True for a text of one or more of the digits 0 to 9 and nothing else.
bool IsAllDigits(std::wstring_view text);

bool IsInArray(std::int16_t value, std::span<const std::int16_t> list);

}  // namespace tlpacscfg
