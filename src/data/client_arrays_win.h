#pragma once

#include <windows.h>

#include <oaidl.h>

#include <string>
#include <vector>

#include "odbc/table.h"

/// The arrays that a remote data client answers.
namespace tlpacscfg {

/// A two-dimensional array (column, row) with any bounds; without elements, a table without
/// columns. Truth values become -1 and 0, dates the form of the database. Nothing is trusted: what
/// does not fit throws RunTimeError, most often TypeMismatch.
Table tableOf(const VARIANT& result);

/// A one-dimensional array; throws as tableOf does.
std::vector<std::wstring> textsOf(const VARIANT& result);

}  // namespace tlpacscfg
