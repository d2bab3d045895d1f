#pragma once

#include <optional>
#include <span>
#include <string>

#include "config/columns.h"
#include "ui/settings/values/settings_form.h"

/// The one table that ties controls to the properties of a configuration. Showing a record,
/// reading it back and telling whether it was changed are loops over it.
namespace tlpacscfg {

enum class Conversion {
  Text,
  Number,           ///< The text as a 32-bit number.
  Tick,             ///< 1 or 0; any other value than 0 shows as ticked.
  Code,             ///< The code of the selected entry; an unknown code leaves the list as it was.
  Position,         ///< The position of the selected entry.
  FileEntry,        ///< The entry itself, nothing while the list is disabled.
  LogonMapping,     ///< A box and two groups of options; formats of type 2 never show a mapping.
  ContextChange,    ///< The code of the selected entry, 0 while the box beside it is not ticked.
  OptionIndex,      ///< The index of the selected option of a group.
  AccessionFields,  ///< The window's text of ticked entries.
};

struct Binding {
  Field field;
  Control control;  ///< The only or the leading one.
  Conversion conversion;
};

/// In the order of showing and comparing. The mapping follows the vendor format, on which it
/// depends, and the request's password option, which it may change.
std::span<const Binding> bindings();

/// What the window calls the field; the property's name for one that it does not show.
std::wstring captionOf(const Column& column);

/// Puts a record into the controls. A custom XML format without any XML file falls back to
/// "<None>" and gives the message to show.
std::optional<std::wstring> showRecord(SettingsForm& form, const clsPACSConfiguration& record);

/// What the binding's control stands for. Throws Overflow or TypeMismatch for a number that is
/// none, InvalidPropertyArrayIndex for a list without a selected entry.
FieldValue readBack(const SettingsForm& form, const Binding& binding);

/// Copies every control into the record. A disabled list without a selected entry leaves what the
/// record holds. When a control cannot be converted, it throws and the record stays as it was.
void readBack(const SettingsForm& form, clsPACSConfiguration& record);

/// Whether reading the controls back would leave the record as it is. A control that cannot be
/// converted counts as changed.
bool PACSValueTheSame(const SettingsForm& form, const clsPACSConfiguration& record);

}  // namespace tlpacscfg
