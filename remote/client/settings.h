#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tlpacscfg::client {

using Fingerprint = std::array<std::uint8_t, 32>;

/// How this computer reaches one host.
struct Settings {
  std::wstring token;
  bool plainHttp = false;
  /// SHA-256 of the certificates that are accepted and no others; when empty, the system's trust
  /// store decides.
  std::vector<Fingerprint> fingerprints;
};

/// On Windows: reads the values below SOFTWARE\TlCommClient\HOST of the user, with those of the
/// machine as a fallback: no other host gets the token. Throws ClientError for missing or invalid
/// values.
Settings readSettings(const std::wstring& host);

/// 64 hexadecimal digits, with or without colons between the bytes; nullopt for other texts.
std::optional<Fingerprint> parseFingerprint(std::wstring_view text);

}  // namespace tlpacscfg::client
