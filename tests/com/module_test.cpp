#include <cstring>
#include <set>

#include "com/com_fixture.h"
#include "support/text.h"

namespace tlpacscfg::test {
namespace {

class ModuleTest : public ComTest {
 protected:
  const std::byte* base() const { return reinterpret_cast<const std::byte*>(host.component()); }

  const IMAGE_DATA_DIRECTORY& directory(int index) const {
    const auto* const dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(base());
    const auto* const headers = reinterpret_cast<const IMAGE_NT_HEADERS*>(base() + dos->e_lfanew);
    return headers->OptionalHeader.DataDirectory[index];
  }

  template <class Table>
  const Table* table(DWORD address) const {
    return reinterpret_cast<const Table*>(base() + address);
  }
};

TEST_F(ModuleTest, ComponentNeedsNothingButTheSystem) {
  const std::set<std::wstring> system = {
      L"ADVAPI32.DLL", L"COMCTL32.DLL", L"GDI32.DLL",    L"KERNEL32.DLL", L"MSVCRT.DLL",
      L"ODBC32.DLL",   L"OLE32.DLL",    L"OLEAUT32.DLL", L"USER32.DLL",   L"OLEACC.DLL",
      L"UXTHEME.DLL",  L"SHELL32.DLL",  L"SHLWAPI.DLL"};
  const auto* import =
      table<IMAGE_IMPORT_DESCRIPTOR>(directory(IMAGE_DIRECTORY_ENTRY_IMPORT).VirtualAddress);
  int count = 0;
  for (; import->Name != 0; ++import, ++count) {
    const std::wstring name = upperCase(fromUtf8(table<char>(import->Name)));
    EXPECT_TRUE(system.contains(name)) << toUtf8(name);
  }
  EXPECT_GT(count, 3);
}

TEST_F(ModuleTest, ComponentExportsTheFourFunctionsOfAServerAndNoMore) {
  const auto* exports =
      table<IMAGE_EXPORT_DIRECTORY>(directory(IMAGE_DIRECTORY_ENTRY_EXPORT).VirtualAddress);
  std::set<std::string> names;
  for (DWORD i = 0; i < exports->NumberOfNames; ++i) {
    names.insert(table<char>(table<DWORD>(exports->AddressOfNames)[i]));
  }
  EXPECT_EQ(names, (std::set<std::string>{"DllCanUnloadNow", "DllGetClassObject",
                                          "DllRegisterServer", "DllUnregisterServer"}));
  EXPECT_STREQ(table<char>(exports->Name), "TLPACSCFG.dll");
}

TEST_F(ModuleTest, ComponentAsksForTheThemedControls) {
  const HRSRC resource = FindResourceW(host.component(), MAKEINTRESOURCEW(2), MAKEINTRESOURCEW(24));
  ASSERT_NE(resource, nullptr);
  const std::string manifest(
      static_cast<const char*>(LockResource(LoadResource(host.component(), resource))),
      SizeofResource(host.component(), resource));
  EXPECT_NE(manifest.find("Microsoft.Windows.Common-Controls\" version=\"6.0.0.0\""),
            std::string::npos);
}

}  // namespace
}  // namespace tlpacscfg::test
