#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "ui/settings/values/settings_form.h"

namespace tlpacscfg {

/// The controls whose changes trigger the rules.
std::span<const Control> governingControls();

struct RuleResult {
  SettingsForm form;
  /// To be shown before the form.
  std::optional<std::wstring> message;
};

/// Enables, shows, renames or clears controls according to the vendor format, the response type and
/// the chosen options. The result depends only on the values, not on the order of their input.
RuleResult applyFieldRules(SettingsForm form);

/// 0 when logons are not mapped; 1 to 6 for the chosen pair of options.
std::int16_t getUserLogonMappingValue(const SettingsForm& form);
/// Selects the pair of options and enables or disables what depends on it. Other codes than 0 to 6
/// select nothing.
void SetUserLogonMapping(SettingsForm& form, std::int16_t code);

}  // namespace tlpacscfg
