#pragma once

#include <string>

#include "com/host_object.h"
#include "remote/client/client_fixture.h"

namespace tlpacscfg::test {

/// The client itself, without the component.
class RawClientTest : public ServiceClientTest {
 protected:
  HostObject client = HostObject::create(L"TlCommClient.clsTlCommClient");

  Outcome connectTo(int port, int seconds) {
    return client.call(L"ConnectToService",
                       {L"test", L"127.0.0.1", std::to_wstring(port), std::to_wstring(seconds)});
  }
  std::wstring error() { return client.call(L"CheckForError").text(); }
};

}  // namespace tlpacscfg::test
