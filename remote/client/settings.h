#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

namespace tlpacscfg::client {

using Fingerprint = std::array<std::uint8_t, 32>;

/// How this computer reaches services: the values below SOFTWARE\TlCommClient of the user, with
/// those of the machine as a fallback.
struct Settings {
  std::wstring token;
  bool plainHttp = false;
  /// SHA-256 of the only accepted certificate; without it, the system's trust store decides.
  std::optional<Fingerprint> fingerprint;
};

/// Throws ClientError for missing or invalid values.
Settings readSettings();

/// 64 hexadecimal digits, with or without colons between the bytes; nullopt for other texts.
std::optional<Fingerprint> parseFingerprint(std::wstring_view text);

}  // namespace tlpacscfg::client
