#pragma once

#include <bitset>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "ui/settings/values/settings_controls.h"
#include "ui/settings/values/settings_options.h"

namespace tlpacscfg {

/// The content and the appearance of one control.
struct ControlContent {
  std::wstring text;    ///< Of a text box, or the caption.
  bool ticked = false;  ///< Of a check box or an option.
  int position = -1;    ///< Of a list; -1 when nothing is selected.
  bool enabled = true;
  bool visible = true;
  std::wstring_view tooltip;  ///< One of the constants of the tables.

  bool operator==(const ControlContent&) const = default;
};

/// All controls of the settings window as a value.
class SettingsForm {
 public:
  /// The window as designed: nothing selected, nothing ticked.
  explicit SettingsForm(std::vector<std::wstring> xmlFiles = {});

  ControlContent& operator[](Control control) {
    return contents_[static_cast<std::size_t>(control)];
  }
  const ControlContent& operator[](Control control) const {
    return contents_[static_cast<std::size_t>(control)];
  }

  /// The entries of the list of XML files.
  std::vector<std::wstring> xmlFiles;

  /// The stored text of the accession fields: the record's text until a tick changes, then the
  /// names of the ticked entries.
  std::wstring accessionFieldText;
  std::bitset<kDictationFieldCount> accessionTicks;

  bool operator==(const SettingsForm&) const = default;

 private:
  std::vector<ControlContent> contents_;
};

/// The code of the list's selected entry.
std::optional<std::int16_t> selectedCode(const SettingsForm& form, Control list);
/// Throws InvalidPropertyArrayIndex when nothing is selected.
std::int16_t requiredCode(const SettingsForm& form, Control list);

/// Selects the entry with the code; if there is none, the selection stays.
void selectCode(SettingsForm& form, Control list, std::int16_t code);

/// Selects one option of a group; none for an index outside of it.
void selectOption(SettingsForm& form, std::span<const Control> group, std::size_t index);

/// The index of the selected option of the group for multiple accessions; 0 when none is selected.
std::int16_t getMACOption(const SettingsForm& form);
void setMACOption(SettingsForm& form, std::int16_t index);
bool anyMACOptionSelected(const SettingsForm& form);

/// A placeholder: always empty.
std::wstring getMultiAccessFields();
/// Ticks the entries that the list names and keeps the list itself.
void showAccessionFields(SettingsForm& form, std::wstring_view list);
/// Called when the user changed a tick: rebuilds the stored text.
void accessionTicksChanged(SettingsForm& form);
/// The text of the closed list.
std::wstring accessionDisplayText(const SettingsForm& form);

}  // namespace tlpacscfg
