#pragma once

#include <optional>
#include <string>

#include "ui/settings/values/settings_form.h"

namespace tlpacscfg {

struct RuleResult {
  SettingsForm form;
  /// To be shown before the form is.
  std::optional<std::wstring> message;
};

/// What depends on the vendor format, the response type and the enabled options: which controls
/// can be used, are shown, change their texts or lose their values. The outcome depends on the
/// values alone, not on the order in which they were entered.
RuleResult applyFieldRules(SettingsForm form);

}  // namespace tlpacscfg
