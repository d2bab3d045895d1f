#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

namespace tlpacscfg::client {

using Fingerprint = std::array<std::uint8_t, 32>;

/// How this computer reaches services: the values below SOFTWARE\TlCommClient of the user, or else
/// of the machine.
struct Settings {
  std::wstring token;
  bool plainHttp = false;
  /// SHA-256 of the only certificate that is accepted; without it the system decides.
  std::optional<Fingerprint> fingerprint;
};

/// Throws ClientError for values that are missing or make no sense.
Settings readSettings();

/// 64 hexadecimal digits, with or without colons between the bytes; nothing for other texts.
std::optional<Fingerprint> parseFingerprint(std::wstring_view text);

}  // namespace tlpacscfg::client
