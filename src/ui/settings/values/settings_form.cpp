#include "ui/settings/values/settings_form.h"

#include <algorithm>
#include <utility>

#include "support/runtime_error.h"
#include "support/text.h"

namespace tlpacscfg {
namespace {

constexpr Control kMacOptions[] = {Control::optMultiAccessionHandlingOption_0,
                                   Control::optMultiAccessionHandlingOption_1,
                                   Control::optMultiAccessionHandlingOption_2};

std::wstring tickedFields(const SettingsForm& form, const wchar_t* separator) {
  std::wstring text;
  for (std::size_t i = 0; i < kDictationFieldCount; ++i) {
    if (!form.accessionTicks[i]) continue;
    if (!text.empty()) text += separator;
    text += kDictationFields[i].text;
  }
  return text;
}

}  // namespace

SettingsForm::SettingsForm(std::vector<std::wstring> files)
    : xmlFiles(std::move(files)), contents_(kControlCount) {
  for (const ControlDesign& control : controls()) {
    (*this)[control.control].text = control.text;
    (*this)[control.control].tooltip = control.tooltip;
  }
}

std::optional<std::int16_t> selectedCode(const SettingsForm& form, Control list) {
  const auto options = optionsOf(list);
  const int position = form[list].position;
  if (position < 0 || static_cast<std::size_t>(position) >= options.size()) return std::nullopt;
  return options[static_cast<std::size_t>(position)].code;
}

std::int16_t requiredCode(const SettingsForm& form, Control list) {
  const std::optional<std::int16_t> code = selectedCode(form, list);
  if (!code) raise(ErrorNumber::InvalidPropertyArrayIndex);
  return *code;
}

void selectCode(SettingsForm& form, Control list, std::int16_t code) {
  const auto options = optionsOf(list);
  for (std::size_t i = 0; i < options.size(); ++i) {
    if (options[i].code == code) form[list].position = static_cast<int>(i);
  }
}

void selectOption(SettingsForm& form, std::span<const Control> group, std::size_t index) {
  for (std::size_t i = 0; i < group.size(); ++i) form[group[i]].ticked = i == index;
}

std::int16_t getMACOption(const SettingsForm& form) {
  for (std::size_t i = 0; i < std::size(kMacOptions); ++i) {
    if (form[kMacOptions[i]].ticked) return static_cast<std::int16_t>(i);
  }
  return 0;
}

void setMACOption(SettingsForm& form, std::int16_t index) {
  if (index < 0 || static_cast<std::size_t>(index) >= std::size(kMacOptions)) return;
  selectOption(form, kMacOptions, static_cast<std::size_t>(index));
}

bool anyMACOptionSelected(const SettingsForm& form) {
  return std::any_of(std::begin(kMacOptions), std::end(kMacOptions),
                     [&](Control option) { return form[option].ticked; });
}

std::wstring getMultiAccessFields() { return {}; }

void showAccessionFields(SettingsForm& form, std::wstring_view list) {
  form.accessionFieldText = list;
  form.accessionTicks.reset();
  for (const std::wstring_view piece : split(list, L',')) {
    for (std::size_t i = 0; i < kDictationFieldCount; ++i) {
      if (kDictationFields[i].text == piece) form.accessionTicks.set(i);
    }
  }
}

void accessionTicksChanged(SettingsForm& form) {
  form.accessionFieldText = tickedFields(form, L",");
}

std::wstring accessionDisplayText(const SettingsForm& form) { return tickedFields(form, L", "); }

}  // namespace tlpacscfg
