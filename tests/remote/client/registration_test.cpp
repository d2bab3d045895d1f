#include "data/tl_comm_client.h"
#include "remote/client/client_fixture.h"
#include "support/handle_win.h"
#include "support/registry.h"
#include "support/text.h"

namespace tlpacscfg::test {
namespace {

/// Runs regsvr32 with these arguments and gives its exit code.
DWORD regsvr32(const std::wstring& arguments) {
  STARTUPINFOW startup{};
  startup.cb = sizeof(startup);
  PROCESS_INFORMATION process{};
  std::wstring line = L"regsvr32.exe " + arguments;
  EXPECT_TRUE(CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                             &startup, &process));
  const UniqueHandle<HANDLE, CloseHandle> ownedProcess(process.hProcess);
  const UniqueHandle<HANDLE, CloseHandle> ownedThread(process.hThread);
  EXPECT_EQ(WaitForSingleObject(process.hProcess, 60'000), WAIT_OBJECT_0);
  DWORD code = 1;
  EXPECT_TRUE(GetExitCodeProcess(process.hProcess, &code));
  return code;
}

class RegistrationTest : public ClientTest {
 protected:
  ~RegistrationTest() override { registerServer("DllRegisterServer"); }

  const std::wstring library = clientPath();
  static constexpr const wchar_t* kClass =
      L"SOFTWARE\\Classes\\CLSID\\{40414A13-F055-4316-AF2D-8813F074449E}";
  static constexpr const wchar_t* kProgId = L"SOFTWARE\\Classes\\TlCommClient.clsTlCommClient";
};

TEST_F(RegistrationTest, Regsvr32RegistersAnApartmentThreadedClass) {
  ASSERT_EQ(regsvr32(L"/s /u \"" + library + L"\""), 0U);
  ASSERT_EQ(regsvr32(L"/s \"" + library + L"\""), 0U);
  const auto value = [](const std::wstring& key, const wchar_t* name) {
    return ReadRegString(registry::Root::LocalMachine, key, name);
  };
  EXPECT_TRUE(equalIgnoringCase(value(std::wstring(kClass) + L"\\InprocServer32", L""), library));
  EXPECT_EQ(value(std::wstring(kClass) + L"\\InprocServer32", L"ThreadingModel"), L"Apartment");
  EXPECT_EQ(value(std::wstring(kProgId) + L"\\CLSID", L""),
            L"{40414A13-F055-4316-AF2D-8813F074449E}");
  EXPECT_NO_THROW(createTlCommClient());
}

TEST_F(RegistrationTest, AnUnregisteredClientIsNotConnected) {
  ASSERT_EQ(regsvr32(L"/s /u \"" + library + L"\""), 0U);
  EXPECT_FALSE(registry::keyExists(registry::Root::LocalMachine, kClass));
  EXPECT_FALSE(registry::keyExists(registry::Root::LocalMachine, kProgId));
  config.TlCommClientHostIP = L"127.0.0.1";
  config.TlCommClientHostPort = L"1";
  config.TlCommClientTimeout = L"1";
  logOn();
  EXPECT_FALSE(ConnectTlCommClient(config));
  EXPECT_EQ(log(), debugLine(9, L"[TLPACSCFG] Connecting to TlCommClient") +
                       debugLine(10, L"[TLPACSCFG] Storing database name:Talora"));
}

TEST_F(RegistrationTest, TheLibraryMayBeUnloadedWhenItsObjectsAreGone) {
  const UniqueHandle<HMODULE, FreeLibrary> module(LoadLibraryW(library.c_str()));
  ASSERT_TRUE(static_cast<bool>(module));
  const auto canUnload = reinterpret_cast<HRESULT(STDAPICALLTYPE*)()>(
      reinterpret_cast<void (*)()>(GetProcAddress(module.get(), "DllCanUnloadNow")));
  auto client = createTlCommClient();
  EXPECT_EQ(canUnload(), S_FALSE);
  client.reset();
  CoFreeUnusedLibraries();
  EXPECT_EQ(canUnload(), S_OK);
}

}  // namespace
}  // namespace tlpacscfg::test
