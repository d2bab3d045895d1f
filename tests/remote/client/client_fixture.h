#pragma once

#include <windows.h>

#include <objbase.h>

#include "harness/core_fixture.h"
#include "remote/harness/wine_service.h"

namespace tlpacscfg::test {

/// While it lives, the thread has initialised COM, and the reference client is registered and has
/// no settings.
class RegisteredClient {
 public:
  RegisteredClient();
  ~RegisteredClient();
  RegisteredClient(const RegisteredClient&) = delete;
  RegisteredClient& operator=(const RegisteredClient&) = delete;

  /// A value of the user for a host of this computer.
  void set(const std::wstring& name, const std::wstring& value,
           const std::wstring& host = L"127.0.0.1") const;
};

/// The component's settings for a service of this computer.
void useService(HostSettings& settings, int port, const std::wstring& timeout = L"60");

class ClientTest : public SiteTest {
 protected:
  ClientTest();

  void set(const std::wstring& name, const std::wstring& value,
           const std::wstring& host = L"127.0.0.1") const {
    client_.set(name, value, host);
  }

 private:
  RegisteredClient client_;
};

/// The component connected to the site's database through the reference client and a service.
class ServiceClientTest : public ClientTest {
 protected:
  ServiceClientTest();

  WineService service;

  void useService(int port, const std::wstring& timeout = L"60") {
    test::useService(config, port, timeout);
  }
  void connectClient();
};

/// The client's DLL.
std::wstring clientPath();
/// Calls an entry point of the client's DLL as regsvr32 does.
void registerServer(const char* entryPoint);

}  // namespace tlpacscfg::test
