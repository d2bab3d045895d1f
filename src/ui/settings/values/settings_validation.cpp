#include "ui/settings/values/settings_validation.h"

#include <algorithm>
#include <limits>
#include <optional>

#include "config/summary_texts.h"
#include "support/text.h"

namespace tlpacscfg {
namespace {

using Message = std::optional<std::wstring>;

Message checkMicrophoneButtons(const SettingsForm& form) {
  const std::int16_t start = selectedCode(form, Control::cmbStartPACS).value_or(0);
  if (start < 1 || start != selectedCode(form, Control::cmbManualEntry)) return std::nullopt;
  return L"The 'Confirm Start Integration' microphone button and the 'Switch To Manual Entry' "
         L"microphone button cannot be the same button. Please change one and save again.";
}

Message checkDescription(const SettingsForm& form, const colPACSConfiguration& configurations,
                         std::int16_t currentID) {
  const std::wstring& typed = form[Control::txtDescription].text;
  const std::wstring name = upperCase(trimBlanks(typed));
  if (name.empty()) return L"The Configuration Description Field cannot be blank.";
  for (const auto& configuration : configurations.ColPACSConfigs->items()) {
    if (configuration->configID == currentID) continue;
    if (upperCase(trimBlanks(configuration->Description)) != name) continue;
    return L"The configuration name '" + typed +
           L"' is already in use by another configuration.  Please change the configuration name "
           L"in the 'Description' field.";
  }
  return std::nullopt;
}

Message checkApplicableFields(const SettingsForm& form) {
  const int type = form[Control::cmbResponseType].position;
  if (type != response::kUrl && type != response::kHl7) return std::nullopt;
  const std::wstring text = upperCase(form[Control::txtResponseFileName].text);
  const std::size_t marker = text.find(L"{AF}");
  // Only a marker after the first character counts: templates may begin with one.
  if (marker == text.npos || marker == 0) return std::nullopt;
  if (!form[Control::txtApplicableFields].text.empty()) return std::nullopt;
  return std::wstring(L"Applicable Fields must be set if the ") +
         (type == response::kUrl ? L"URL Address" : L"HL7 Message") +
         L" contains the {AF} field marker.";
}

/// The value of a text of digits, capped: it may have any length.
std::int64_t valueOfDigits(std::wstring_view digits) {
  constexpr std::int64_t kMax = std::numeric_limits<std::int32_t>::max();
  std::int64_t value = 0;
  for (const wchar_t digit : digits) value = std::min(value * 10 + (digit - L'0'), kMax);
  return value;
}

bool isPort(const std::wstring& text, std::int64_t minPort) {
  constexpr std::int64_t kMaxPort = 65000;
  if (!IsAllDigits(text)) return false;
  const std::int64_t value = valueOfDigits(text);
  return value >= minPort && value <= kMaxPort;
}

Message checkPort(const SettingsForm& form) {
  const std::optional<std::int16_t> format = selectedCode(form, Control::cmbVendorType);
  const std::wstring& port = form[Control::txtPort].text;
  if (format == vendor::kTcpIp && !isPort(port, 1)) {
    return L"TCP/IP Port is not valid.  Please enter a port number between 1 and 65000.";
  }
  if (format == vendor::kBrokerExtended && !isPort(port, 0)) {
    return L"Port is not valid.  Please enter a port number between 0 and 65000.";
  }
  return std::nullopt;
}

bool usesPort(std::optional<std::int16_t> format) {
  return format == vendor::kTcpIp || format == vendor::kBrokerExtended;
}

}  // namespace

Validation ValidData(const SettingsForm& form, const colPACSConfiguration& configurations,
                     std::int16_t currentID) {
  Validation result;
  const auto note = [&result](Message message) {
    if (!message) return false;
    result.messages.push_back(std::move(*message));
    return true;
  };
  if (!note(checkMicrophoneButtons(form))) {
    note(checkDescription(form, configurations, currentID));
  }
  note(checkApplicableFields(form));
  note(checkPort(form));
  result.resetPort = !usesPort(selectedCode(form, Control::cmbVendorType)) &&
                     !IsAllDigits(form[Control::txtPort].text);
  return result;
}

}  // namespace tlpacscfg
