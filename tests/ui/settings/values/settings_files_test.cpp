#include "ui/settings/values/settings_files.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "data/mod_main.h"
#include "data/tl_comm_client.h"
#include "harness/core_fixture.h"
#include "harness/scratch.h"
#include "support/runtime_error.h"

namespace tlpacscfg::test {
namespace {

using Names = std::vector<std::wstring>;

class PromptFilesTest : public CoreTest {
 protected:
  void makePrompts() {
    makeDirectory(scratchPath(L"root"));
    makeDirectory(scratchPath(L"root/TALORA"));
    makeDirectory(scratchPath(L"root/TALORA/PROMPTS"));
    modMain.g_strNetworkRootDir = scratchPath(L"root");
  }
  void addFile(const std::wstring& name) {
    writeBytes(scratchPath(L"root/TALORA/PROMPTS/" + name), "<x/>");
  }
  static Names sorted(Names names) {
    std::sort(names.begin(), names.end());
    return names;
  }
};

TEST_F(PromptFilesTest, TheXmlFilesOfThePromptsDirectoryAreListed) {
  makePrompts();
  for (const wchar_t* name :
       {L"a.xml", L"B.XML", L"SysWindowCfg.xml", L"c.xmlx", L"d.txt", L"xml", L"caf\u00e9.xml"}) {
    addFile(name);
  }
  makeDirectory(scratchPath(L"root/TALORA/PROMPTS/folder.xml"));
  EXPECT_EQ((Names{L"B.XML", L"a.xml", L"caf\u00e9.xml"}), sorted(promptXmlFiles()));
}

TEST_F(PromptFilesTest, AnEmptyOrMissingDirectoryGivesNone) {
  EXPECT_EQ(Names{}, promptXmlFiles());
  makePrompts();
  EXPECT_EQ(Names{}, promptXmlFiles());
}

class FakeClient : public TlCommClientObject {
 public:
  bool ConnectToService(const std::wstring&, const std::wstring&, const std::wstring&,
                        const std::wstring&) override {
    return true;
  }
  void DisconnectFromService(const std::wstring&) override {}
  std::int32_t SQLQueryTable(const std::wstring&, const std::wstring&) override { return 0; }
  Table GetTableData(std::int16_t) override { return Table(); }
  bool SQLExecuteText(const std::wstring&, const std::wstring&) override { return true; }
  Names GetNetworkDirectoryFiles(const std::wstring& directory,
                                 const std::wstring& pattern) override {
    if (fails) raise(ErrorNumber::CannotCreateObject);
    asked = {directory, pattern};
    return {L"z.xml", L"SysWindowCfg.xml",  L"SYSWINDOWCFG.XML",  L"sitewindowcfg.xml",
            L"a.xml", L"SiteWindowCfg.XML", L"MySysWindowCfg.xml"};
  }
  std::wstring CheckForError() override { return error; }

  static inline Names asked;
  static inline bool fails = false;
  static inline std::wstring error;
};

class RemotePromptFilesTest : public PromptFilesTest {
 protected:
  RemotePromptFilesTest() {
    FakeClient::asked.clear();
    FakeClient::fails = false;
    FakeClient::error.clear();
    modTlCommClient.g_objTlCommClient = std::make_unique<FakeClient>();
    modMain.g_strNetworkRootDir = L"\\\\server\\root";
  }
};

TEST_F(RemotePromptFilesTest, AConnectedClientIsAskedInsteadAndTheTwoSystemFilesAreNeverOffered) {
  EXPECT_EQ((Names{L"z.xml", L"a.xml", L"MySysWindowCfg.xml"}), promptXmlFiles());
  EXPECT_EQ((Names{L"\\\\server\\root\\TALORA\\PROMPTS", L"*.XML"}), FakeClient::asked);
}

TEST_F(RemotePromptFilesTest, AFailureOfTheClientGivesNoFile) {
  FakeClient::error = L"no such directory";
  EXPECT_EQ(Names{}, promptXmlFiles());
  FakeClient::error.clear();
  FakeClient::fails = true;
  EXPECT_EQ(Names{}, promptXmlFiles());
}

}  // namespace
}  // namespace tlpacscfg::test
