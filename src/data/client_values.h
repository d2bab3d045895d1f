#pragma once

#include <windows.h>

#include <oaidl.h>

#include <cstdint>
#include <string>
#include <vector>

#include "odbc/table.h"

/// What a late-bound client answers, as values of the component. Nothing is trusted: what does not
/// fit throws RunTimeError, most often TypeMismatch.
namespace tlpacscfg {

bool truthOf(const VARIANT& value);
std::int32_t numberOf(const VARIANT& value);
std::wstring textOf(const VARIANT& value);

/// A two-dimensional array (column, row) with any bounds. Empty, Null or an array that was never
/// given bounds is a table without columns.
/// Truth values become -1 and 0, dates the form of the database.
Table tableOf(const VARIANT& value);

/// A one-dimensional array; Empty, Null or an array that was never given bounds holds nothing.
std::vector<std::wstring> textsOf(const VARIANT& value);

}  // namespace tlpacscfg
