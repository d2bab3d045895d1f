#pragma once

#include <windows.h>

#include <oaidl.h>

#include <cstdint>
#include <string>

#include "automation/owned_variant.h"

/// What a late-bound call answered, as C++ values. A value that does not fit throws RunTimeError:
/// TypeMismatch, Overflow, or InvalidUseOfNull.
namespace tlpacscfg {

/// The value that a result refers to, or the result itself.
const VARIANT& valueOf(const VARIANT& result);

/// A number, date, truth value or text as another of these types.
OwnedVariant plainValue(const VARIANT& value, VARTYPE type);
std::wstring plainText(const VARIANT& value);

/// Empty counts as false, zero or an empty text.
bool truthOf(const VARIANT& result);
std::int32_t numberOf(const VARIANT& result);
std::wstring textOf(const VARIANT& result);

}  // namespace tlpacscfg
