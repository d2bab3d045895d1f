#include <map>

#include "com/com_fixture.h"
#include "com/expected_members.h"
#include "harness/scratch.h"
#include "support/text.h"

namespace tlpacscfg::test {
namespace {

constexpr const wchar_t* kConfigId = L"{4F48DB07-84BF-4701-A7D6-E179A2BFA889}";
constexpr const wchar_t* kRegistryId = L"{DEBDB8F1-68B4-4283-8B53-17745D2A8B49}";

/// Replaces HKEY_CLASSES_ROOT by an empty key, for this process and the lifetime of this object.
class OwnClassesRoot {
 public:
  OwnClassesRoot() {
    RegDeleteTreeW(HKEY_CURRENT_USER, path().c_str());
    EXPECT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, path().c_str(), 0, nullptr, 0, KEY_ALL_ACCESS,
                              nullptr, &key_, nullptr),
              ERROR_SUCCESS);
    EXPECT_EQ(RegOverridePredefKey(HKEY_CLASSES_ROOT, key_), ERROR_SUCCESS);
  }
  ~OwnClassesRoot() {
    RegOverridePredefKey(HKEY_CLASSES_ROOT, nullptr);
    RegCloseKey(key_);
    RegDeleteTreeW(HKEY_CURRENT_USER, path().c_str());
  }
  OwnClassesRoot(const OwnClassesRoot&) = delete;
  OwnClassesRoot& operator=(const OwnClassesRoot&) = delete;

 private:
  static std::wstring path() {
    return L"Software\\TlPacsCfgTest-" + decimal(GetCurrentProcessId());
  }

  HKEY key_ = nullptr;
};

std::wstring classesValue(const std::wstring& key, const wchar_t* name = nullptr) {
  wchar_t text[512] = {};
  DWORD bytes = sizeof(text) - sizeof(wchar_t);
  const LSTATUS status =
      RegGetValueW(HKEY_CLASSES_ROOT, key.c_str(), name, RRF_RT_REG_SZ, nullptr, text, &bytes);
  return status == ERROR_SUCCESS ? text : L"<missing>";
}

DWORD subkeysOfClassesRoot() {
  DWORD count = 0;
  EXPECT_EQ(RegQueryInfoKeyW(HKEY_CLASSES_ROOT, nullptr, nullptr, nullptr, &count, nullptr, nullptr,
                             nullptr, nullptr, nullptr, nullptr, nullptr),
            ERROR_SUCCESS);
  return count;
}

/// Whether a key, or a key below it, has values or keys of its own.
bool holdsAnything(HKEY root, const std::wstring& path) {
  HKEY key = nullptr;
  if (RegOpenKeyExW(root, path.c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS) return false;
  DWORD keys = 0, values = 0;
  RegQueryInfoKeyW(key, nullptr, nullptr, nullptr, &keys, nullptr, nullptr, &values, nullptr,
                   nullptr, nullptr, nullptr);
  RegCloseKey(key);
  return keys > 0 || values > 0;
}

class RegistrationTest : public ComTest {
 protected:
  OwnClassesRoot root;
};

TEST_F(RegistrationTest, ClassesAreRegisteredUnderTheirNames) {
  EXPECT_EQ(nameOf(host.callExport("DllRegisterServer")), "S_OK");
  const std::map<std::wstring, std::wstring> classes = {{kConfig, kConfigId},
                                                        {kRegistry, kRegistryId}};
  for (const auto& [progId, id] : classes) {
    SCOPED_TRACE(toUtf8(progId));
    EXPECT_EQ(classesValue(progId + L"\\CLSID"), id);
    EXPECT_EQ(classesValue(progId + L"\\CurVer"), progId + L".1");
    EXPECT_EQ(classesValue(progId + L".1\\CLSID"), id);
    const std::wstring key = L"CLSID\\" + id;
    EXPECT_EQ(classesValue(key), progId);
    EXPECT_TRUE(equalIgnoringCase(classesValue(key + L"\\InprocServer32"), componentPath()));
    EXPECT_EQ(classesValue(key + L"\\InprocServer32", L"ThreadingModel"), L"Apartment");
    EXPECT_EQ(classesValue(key + L"\\ProgID"), progId + L".1");
    EXPECT_EQ(classesValue(key + L"\\VersionIndependentProgID"), progId);
    EXPECT_EQ(classesValue(key + L"\\TypeLib"), kLibraryId);
  }
}

TEST_F(RegistrationTest, TypeLibraryIsRegisteredWithItsFile) {
  EXPECT_EQ(nameOf(host.callExport("DllRegisterServer")), "S_OK");
  const std::wstring file =
      classesValue(std::wstring(L"TypeLib\\") + kLibraryId +
                   (sizeof(void*) == 8 ? L"\\1.0\\0\\win64" : L"\\1.0\\0\\win32"));
  EXPECT_TRUE(equalIgnoringCase(file, componentPath())) << toUtf8(file);
}

TEST_F(RegistrationTest, ObjectsOfTheOtherClassesAreNotRegistered) {
  EXPECT_EQ(nameOf(host.callExport("DllRegisterServer")), "S_OK");
  EXPECT_EQ(classesValue(std::wstring(L"CLSID\\") + expectedClass(L"colWorkstation").classId),
            L"<missing>");
  EXPECT_EQ(classesValue(L"TLPACSCFG.colWorkstation\\CLSID"), L"<missing>");
}

TEST(ManifestTest, HostsWithoutRegistrationFindTheSameClasses) {
  const std::wstring manifest =
      fromUtf8(readBytes(sourcePath("apps/registration_free/TLPACSCFG.Classes.manifest")));
  for (const auto& [progId, id] : {std::pair{kConfig, kConfigId}, {kRegistry, kRegistryId}}) {
    EXPECT_NE(
        manifest.find(std::wstring(L"<comClass clsid=\"") + id + L"\" progid=\"" + progId + L"\""),
        manifest.npos)
        << toUtf8(progId);
  }
  EXPECT_NE(manifest.find(std::wstring(L"<typelib tlbid=\"") + kLibraryId + L"\" version=\"1.0\""),
            manifest.npos);
}

TEST_F(RegistrationTest, RegisteringTwiceIsLikeOnce) {
  EXPECT_EQ(nameOf(host.callExport("DllRegisterServer")), "S_OK");
  const DWORD keys = subkeysOfClassesRoot();
  EXPECT_EQ(nameOf(host.callExport("DllRegisterServer")), "S_OK");
  EXPECT_EQ(subkeysOfClassesRoot(), keys);
}

TEST_F(RegistrationTest, UnregisteringLeavesNothingBehind) {
  EXPECT_EQ(nameOf(host.callExport("DllRegisterServer")), "S_OK");
  EXPECT_EQ(nameOf(host.callExport("DllUnregisterServer")), "S_OK");
  for (const wchar_t* key : {L"TLPACSCFG.clsConfig", L"TLPACSCFG.clsConfig.1",
                             L"TLPACSCFG.brnkregs", L"TLPACSCFG.brnkregs.1"}) {
    EXPECT_EQ(classesValue(key), L"<missing>");
  }
  for (const wchar_t* folder : {L"CLSID", L"TypeLib", L"Interface"}) {
    EXPECT_FALSE(holdsAnything(HKEY_CLASSES_ROOT, folder)) << toUtf8(folder);
  }
}

TEST_F(RegistrationTest, UnregisteringWhatIsNotRegisteredSucceeds) {
  EXPECT_EQ(nameOf(host.callExport("DllUnregisterServer")), "S_OK");
  EXPECT_EQ(subkeysOfClassesRoot(), 0U);
}

}  // namespace
}  // namespace tlpacscfg::test
