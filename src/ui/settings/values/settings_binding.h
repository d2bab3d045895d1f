#pragma once

#include <optional>
#include <span>
#include <string>

#include "config/columns.h"
#include "ui/settings/values/settings_form.h"

/// The table that binds controls to the properties of a configuration. Showing a record, reading it
/// back and detecting changes are loops over it.
namespace tlpacscfg {

enum class Conversion {
  Text,
  Number,           ///< The text as a 32-bit number.
  Tick,             ///< 1 or 0; any other value than 0 shows as ticked.
  Code,             ///< The code of the selected entry; an unknown code leaves the list as it was.
  Position,         ///< The position of the selected entry.
  FileEntry,        ///< The entry itself; empty while the list is disabled.
  LogonMapping,     ///< A box and two groups of options; formats of type 2 never show a mapping.
  ContextChange,    ///< The code of the selected entry, 0 while the box beside it is not ticked.
  OptionIndex,      ///< The index of the selected option of a group.
  AccessionFields,  ///< The window's text of ticked entries.
};

struct Binding {
  Field field;
  Control control;  ///< The only or the first one.
  Conversion conversion;
};

/// In the order of showing and comparing. The mapping comes after the vendor format, on which it
/// depends, and after the request's password option, which it may change.
std::span<const Binding> bindings();

/// The caption of the field in the window; the property's name if it is not shown.
std::wstring captionOf(const Column& column);

/// Shows a record in the controls. A custom XML format without any XML file falls back to
/// "<None>" and returns the message to show.
std::optional<std::wstring> showRecord(SettingsForm& form, const clsPACSConfiguration& record);

/// The value of the binding's control. Throws Overflow or TypeMismatch for an invalid number,
/// InvalidPropertyArrayIndex for a list without a selected entry.
FieldValue readBack(const SettingsForm& form, const Binding& binding);

/// The same, but null for a disabled list without a selected entry: the record keeps its value.
std::optional<FieldValue> valueToSave(const SettingsForm& form, const Binding& binding);

/// Whether saving would store the value that the record has. Throws like readBack.
bool keepsValue(const SettingsForm& form, const Binding& binding,
                const clsPACSConfiguration& record);

/// Copies every value to save into the record. If a control cannot be converted, throws and leaves
/// the record unchanged.
void readBack(const SettingsForm& form, clsPACSConfiguration& record);

/// Whether reading the controls back would leave the record unchanged. A control that cannot be
/// converted counts as changed.
bool PACSValueTheSame(const SettingsForm& form, const clsPACSConfiguration& record);

}  // namespace tlpacscfg
