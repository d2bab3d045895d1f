#include "client/settings.h"

namespace tlpacscfg::client {
namespace {

int hexDigit(wchar_t digit) {
  if (digit >= L'0' && digit <= L'9') return digit - L'0';
  if (digit >= L'a' && digit <= L'f') return digit - L'a' + 10;
  if (digit >= L'A' && digit <= L'F') return digit - L'A' + 10;
  return -1;
}

}  // namespace

std::optional<Fingerprint> parseFingerprint(std::wstring_view text) {
  Fingerprint fingerprint{};
  std::size_t digits = 0;
  for (const wchar_t c : text) {
    if (c == L':') continue;
    const int digit = hexDigit(c);
    if (digit < 0 || digits == fingerprint.size() * 2) return std::nullopt;
    std::uint8_t& byte = fingerprint[digits++ / 2];
    byte = static_cast<std::uint8_t>(byte << 4 | digit);
  }
  if (digits != fingerprint.size() * 2) return std::nullopt;
  return fingerprint;
}

}  // namespace tlpacscfg::client
