#include "support/ini_file.h"

#include "harness/core_fixture.h"
#include "harness/scratch.h"
#include "support/text.h"

namespace tlpacscfg::test {
namespace {

class IniFileTest : public CoreTest {
 protected:
  std::wstring read(const std::string& bytes) {
    writeBytes(file, bytes);
    return readIniValue(file, L"System", L"NetworkRootDir");
  }

  const std::wstring file = scratchPath(L"site.ini");
};

TEST_F(IniFileTest, AValueIsFoundInItsSection) {
  EXPECT_EQ(read("[Other]\r\nNetworkRootDir=wrong\r\n[System]\r\nA=b\r\nNetworkRootDir=\\\\srv\\x"
                 "\r\n[Third]\r\nNetworkRootDir=wrong\r\n"),
            L"\\\\srv\\x");
}

TEST_F(IniFileTest, SectionsAndKeysAreFoundWithoutRegardToCase) {
  EXPECT_EQ(read("[SYSTEM]\nnetworkrootdir=z\n"), L"z");
}

TEST_F(IniFileTest, BlanksAroundKeyAndValueDoNotCount) {
  EXPECT_EQ(read("[System]\n  NetworkRootDir  =  C:\\a b  \n"), L"C:\\a b");
}

TEST_F(IniFileTest, QuotesAroundAValueAreTakenOff) {
  EXPECT_EQ(read("[System]\nNetworkRootDir=\"C:\\a\"\n"), L"C:\\a");
}

TEST_F(IniFileTest, TheFirstOfTwoValuesCounts) {
  EXPECT_EQ(read("[System]\nNetworkRootDir=1\nNetworkRootDir=2\n"), L"1");
}

TEST_F(IniFileTest, ACommentIsNoValue) { EXPECT_EQ(read("[System]\n;NetworkRootDir=1\n"), L""); }

TEST_F(IniFileTest, WithoutTheKeyTheValueIsEmpty) { EXPECT_EQ(read("[System]\nOther=1\n"), L""); }

TEST_F(IniFileTest, WithoutTheSectionTheValueIsEmpty) {
  EXPECT_EQ(read("NetworkRootDir=1\n[Other]\nNetworkRootDir=1\n"), L"");
}

TEST_F(IniFileTest, AnEmptyValueIsEmpty) { EXPECT_EQ(read("[System]\nNetworkRootDir=\n"), L""); }

TEST_F(IniFileTest, AnEmptyFileHasNoValue) { EXPECT_EQ(read(""), L""); }

TEST_F(IniFileTest, WithoutTheFileTheValueIsEmpty) {
  EXPECT_EQ(readIniValue(scratchPath(L"missing.ini"), L"System", L"NetworkRootDir"), L"");
}

TEST_F(IniFileTest, AtMost127CharactersAreRead) {
  EXPECT_EQ(read("[System]\nNetworkRootDir=" + std::string(127, 'x') + "\n"),
            std::wstring(127, L'x'));
  EXPECT_EQ(read("[System]\nNetworkRootDir=" + std::string(128, 'x') + "\n"),
            std::wstring(127, L'x'));
}

TEST_F(IniFileTest, TheLastLineNeedsNoLineBreak) {
  EXPECT_EQ(read("[System]\nNetworkRootDir=z"), L"z");
}

}  // namespace
}  // namespace tlpacscfg::test
