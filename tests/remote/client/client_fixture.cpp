#include "remote/client/client_fixture.h"

#include <stdexcept>
#include <utility>

#include "data/tl_comm_client.h"
#include "harness/scratch.h"
#include "log/log_support.h"
#include "support/handle_win.h"
#include "support/registry.h"

namespace tlpacscfg::test {
namespace {

constexpr const wchar_t* kKey = L"SOFTWARE\\TlCommClient";

std::wstring keyOf(const std::wstring& host) { return std::wstring(kKey) + L"\\" + host; }

void deleteSettings() { RegDeleteTreeW(HKEY_CURRENT_USER, kKey); }

}  // namespace

std::wstring clientPath() { return builtPath(L"TlCommClient.dll"); }

void registerServer(const char* entryPoint) {
  const UniqueHandle<HMODULE, FreeLibrary> module(LoadLibraryW(clientPath().c_str()));
  if (!module) throw std::runtime_error("TlCommClient.dll cannot be loaded");
  const FARPROC function = GetProcAddress(module.get(), entryPoint);
  if (function == nullptr) throw std::runtime_error(std::string(entryPoint) + " is missing");
  const auto call =
      reinterpret_cast<HRESULT(STDAPICALLTYPE*)()>(reinterpret_cast<void (*)()>(function));
  if (FAILED(call())) throw std::runtime_error(std::string(entryPoint) + " failed");
}

RegisteredClient::RegisteredClient() {
  EXPECT_TRUE(SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)));
  registerServer("DllRegisterServer");
  deleteSettings();
}

RegisteredClient::~RegisteredClient() {
  modTlCommClient.g_objTlCommClient.reset();
  deleteSettings();
  CoUninitialize();
}

void RegisteredClient::set(const std::wstring& name, const std::wstring& value,
                           const std::wstring& host) const {
  ASSERT_TRUE(registry::createKey(registry::Root::CurrentUser, keyOf(host)));
  ASSERT_TRUE(registry::write(registry::Root::CurrentUser, keyOf(host), name, value));
}

void useService(HostSettings& settings, int port, const std::wstring& timeout) {
  settings.TlCommClientHostIP = L"127.0.0.1";
  settings.TlCommClientHostPort = std::to_wstring(port);
  settings.TlCommClientTimeout = timeout;
  settings.SqlDbName = L"Talora";
}

ClientTest::ClientTest() { config.SqlDbName = L"Talora"; }

ServiceClientTest::ServiceClientTest() {
  set(L"Token", WineService::kToken);
  set(L"Transport", L"http");
}

void ServiceClientTest::connectClient() {
  service.start();
  useService(service.port());
  const std::wstring file = std::exchange(modLogSupport.g_strLogFile, std::wstring());
  ASSERT_TRUE(ConnectTlCommClient(config)) << service.log();
  modLogSupport.g_strLogFile = file;
}

}  // namespace tlpacscfg::test
