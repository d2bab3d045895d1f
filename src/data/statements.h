#pragma once

#include <string>

namespace tlpacscfg {

/// Runs one or several action statements on the data path in use: by the remote data client, or on
/// the SQL Server connection, where they happen together or not at all. Stand-alone mode runs
/// nothing. Throws when the direct connection fails; the remote client's failures are only logged.
void ExecuteSQL(const std::wstring& sql);

/// Doubles every single quote.
std::wstring FixQuotes(const std::wstring& text);

}  // namespace tlpacscfg
