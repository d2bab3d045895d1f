#pragma once

#include <cstdint>
#include <string>

/// The row that assigns a configuration to a workstation, and the mark that tells offline copies of
/// the database about a change.
namespace tlpacscfg {

/// 1 when the workstation's row exists, else 0. The name goes into the statement as it stands.
/// Throws when the direct connection fails.
std::int16_t WorkstationConfigExists(const std::wstring& pcName);

/// Appends the INSERT or the UPDATE of the workstation's row to g_strWorkstationBatch. Errors are
/// swallowed.
void SetWorkstationConfig(const std::wstring& pcName, const std::wstring& configId);

/// The statement of the mark that tells offline copies about a change.
inline constexpr const wchar_t* kOfflineUpdateStatement =
    L"INSERT INTO System_offline_db_updates VALUES(-1, 3, GETDATE(), 0, NULL)";

/// Errors are ignored.
void AddOfflineDbUpdate();

}  // namespace tlpacscfg
