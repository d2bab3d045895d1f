#pragma once

/// The class that hosts create, for the DLL and its installer.
namespace tlpacscfg::client {

inline constexpr const wchar_t* kClassId = L"{40414A13-F055-4316-AF2D-8813F074449E}";
inline constexpr const wchar_t* kProgId = L"TlCommClient.clsTlCommClient";

}  // namespace tlpacscfg::client
