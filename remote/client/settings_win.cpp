#include <windows.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "client/client_error.h"
#include "client/settings.h"
#include "shared/token_file.h"
#include "support/text.h"

namespace tlpacscfg::client {
namespace {

constexpr const wchar_t* kKey = L"SOFTWARE\\TlCommClient\\";

std::optional<std::wstring> valueIn(HKEY root, const std::wstring& key, const wchar_t* name) {
  DWORD bytes = 0;
  if (RegGetValueW(root, key.c_str(), name, RRF_RT_REG_SZ, nullptr, nullptr, &bytes) !=
      ERROR_SUCCESS) {
    return std::nullopt;
  }
  std::wstring text(bytes / sizeof(wchar_t) + 1, L'\0');
  bytes = static_cast<DWORD>(text.size() * sizeof(wchar_t));
  if (RegGetValueW(root, key.c_str(), name, RRF_RT_REG_SZ, nullptr, text.data(), &bytes) !=
      ERROR_SUCCESS) {
    return std::nullopt;
  }
  return text.substr(0, text.find(L'\0'));
}

/// The key of the host's values. Throws ClientError for a text that would name another key.
std::wstring keyOf(const std::wstring& host) {
  if (host.empty() || host.find(L'\\') != host.npos || host.find(L'\0') != host.npos) {
    throw ClientError(L"The host is neither a name nor an address.");
  }
  return kKey + host;
}

std::wstring tokenFromFile(const std::wstring& file) {
  std::ifstream stream{std::filesystem::path(file), std::ios::binary};
  if (!stream) throw ClientError(L"The token file cannot be read.");
  return fromUtf8(remote::tokenIn(std::string(std::istreambuf_iterator<char>(stream), {})));
}

}  // namespace

Settings readSettings(const std::wstring& host) {
  const auto value = [key = keyOf(host)](const wchar_t* name) {
    if (const auto own = valueIn(HKEY_CURRENT_USER, key, name)) return *own;
    return valueIn(HKEY_LOCAL_MACHINE, key, name).value_or(L"");
  };
  Settings settings;
  settings.token = value(L"Token");
  const std::wstring tokenFile = value(L"TokenFile");
  if (settings.token.empty() && !tokenFile.empty()) settings.token = tokenFromFile(tokenFile);
  if (settings.token.empty()) throw ClientError(L"No token is set for the host '" + host + L"'.");

  const std::wstring transport = value(L"Transport");
  settings.plainHttp = equalIgnoringCase(transport, L"http");
  if (!settings.plainHttp && !transport.empty() && !equalIgnoringCase(transport, L"https")) {
    throw ClientError(L"The transport is neither https nor http.");
  }
  if (const std::wstring texts = value(L"Fingerprint"); !texts.empty()) {
    for (const std::wstring_view text : split(texts, L',')) {
      const auto fingerprint = parseFingerprint(trimBlanks(text));
      if (!fingerprint) {
        throw ClientError(L"The fingerprint is not one of a SHA-256 certificate digest.");
      }
      settings.fingerprints.push_back(*fingerprint);
    }
  }
  return settings;
}

}  // namespace tlpacscfg::client
