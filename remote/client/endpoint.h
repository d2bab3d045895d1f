#pragma once

#include <windows.h>

#include <winhttp.h>

#include <chrono>
#include <string>

#include "client/settings.h"
#include "support/win_handle.h"

namespace tlpacscfg::client {

struct Answer {
  unsigned status = 0;
  std::string body;
};

/// A service on its host and port. Every failure throws ClientError.
class Endpoint {
 public:
  Endpoint(Settings settings, const std::wstring& host, INTERNET_PORT port,
           std::chrono::seconds timeout);

  /// Sends a JSON text. The answer has arrived within the time-out, or the call fails.
  Answer post(const std::wstring& path, const std::string& json) const;

  const std::wstring& token() const { return settings_.token; }

 private:
  using Handle = UniqueHandle<HINTERNET, WinHttpCloseHandle>;

  Handle openRequest(const std::wstring& path) const;
  void verifyCertificate(HINTERNET request) const;

  Settings settings_;
  std::chrono::seconds timeout_;
  Handle session_;
  Handle connection_;
};

}  // namespace tlpacscfg::client
