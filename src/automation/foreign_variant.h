#pragma once

#include <windows.h>

#include <oaidl.h>

#include <optional>
#include <string_view>

/// VARIANTs that somebody else made: nothing about them can be taken for granted. Windows only.
namespace tlpacscfg {

/// What a by-reference value refers to, or the value itself, also when it refers to nothing.
const VARIANT& target(const VARIANT& value);

/// Whether the references in a value can be followed: S_OK; E_POINTER for a reference to nothing;
/// E_INVALIDARG for a reference to a reference to a VARIANT, which no caller may make.
HRESULT checkReferences(const VARIANT& value);

/// Whether the system's conversion may see a value whose references are checked. It trusts the
/// pointers of arrays and records, and what it does with types that do not exist is not known.
bool isConvertible(const VARIANT& value);

/// The letters of a text, where they lie; nullopt for every other value. References are followed
/// and must have been checked.
std::optional<std::wstring_view> textIn(const VARIANT& value);

}  // namespace tlpacscfg
