#pragma once

#include <windows.h>

#include <oaidl.h>

#include <optional>
#include <string_view>

#include "automation/owned_variant.h"

/// Reading VARIANTs that another program made: nothing about them can be taken for granted.
namespace tlpacscfg {

/// Whether the references in a value can be followed: S_OK; E_POINTER for a null reference;
/// E_INVALIDARG for a reference to a reference to a VARIANT, which no caller may make.
HRESULT checkReferences(const VARIANT& value);

/// The VARIANT that a reference to a VARIANT leads to; any other value itself.
const VARIANT& target(const VARIANT& value);

/// Whether the type is that of a number, date, truth value or text.
bool isPlain(VARTYPE type);

/// Converts a value whose references are checked by rules that are the same in every locale; truth
/// values become the words True and False. Answers S_OK, DISP_E_TYPEMISMATCH or DISP_E_OVERFLOW;
/// throws std::bad_alloc.
HRESULT convert(const VARIANT& value, VARTYPE type, OwnedVariant& result);

/// A view of the value's text; nullopt for a value of another type. References are followed and
/// must have been checked.
std::optional<std::wstring_view> textIn(const VARIANT& value);

/// Whether the value stands for an argument that was left out.
bool isMissing(const VARIANT& value);

}  // namespace tlpacscfg
