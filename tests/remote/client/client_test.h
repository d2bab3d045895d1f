#pragma once

#include <windows.h>

#include <objbase.h>

#include "remote/tools/wine_service.h"
#include "tools/core_test.h"

namespace tlpacscfg::test {

/// A thread that has entered COM, with the reference client registered and without settings.
class ClientTest : public SiteTest {
 protected:
  ClientTest();
  ~ClientTest() override;

  /// A value below the client's key of the user; an empty one is taken away.
  static void set(const std::wstring& name, const std::wstring& value);
};

/// The component connected to the site's database through the reference client and a service.
class ServiceClientTest : public ClientTest {
 protected:
  ServiceClientTest();

  WineService service;

  /// The component's settings for a service of this computer.
  void useService(int port, const std::wstring& timeout = L"60");
  void connectClient();
};

/// Registers a server of this name as regsvr32 does.
void registerServer(const char* entryPoint);

}  // namespace tlpacscfg::test
