#include "support/brnkregs.h"

#include "harness/registry_key.h"

namespace tlpacscfg::test {
namespace {

using registry::Root;
using registry::Value;
using namespace std::string_literals;

class BrnkregsTest : public ::testing::Test {
 protected:
  BrnkregsTest() {
    entries.setAppRegPath(key.path());
    entries.setAppName(L"-App");
  }

  RegistryKey key{Root::LocalMachine};
  RegistryKey appKey{Root::LocalMachine, key.path() + L"-App"};
  brnkregs entries;
};

TEST_F(BrnkregsTest, ThePathReadsBackAsTheName) {
  EXPECT_EQ(entries.appRegPath(), L"-App");
  EXPECT_EQ(entries.appName(), L"-App");
}

TEST_F(BrnkregsTest, TheKeyIsThePathFollowedByTheNameWithNothingBetween) {
  EXPECT_TRUE(entries.CreateRegEntry(1, L"Name", L"text"s));
  EXPECT_TRUE(registry::keyExists(Root::LocalMachine, appKey.path()));
  EXPECT_FALSE(registry::keyExists(Root::LocalMachine, key.path()));
}

TEST_F(BrnkregsTest, EachSetChangesTheKey) {
  RegistryKey other{Root::LocalMachine, key.path() + L"-Other"};
  entries.setAppName(L"-Other");
  EXPECT_TRUE(entries.CreateRegEntry(4, L"Name", std::uint32_t{1}));
  EXPECT_TRUE(registry::keyExists(Root::LocalMachine, other.path()));
  entries.setAppRegPath(L"SOFTWARE\\Missing");
  EXPECT_FALSE(entries.SetAppRegValue(L"Name", 4, std::uint32_t{1}));
}

TEST_F(BrnkregsTest, AnEntryIsCreatedAsText) {
  EXPECT_TRUE(entries.CreateRegEntry(1, L"Name", L"text"s));
  EXPECT_EQ(registry::read(Root::LocalMachine, appKey.path(), L"Name"), Value(L"text\0"s));
}

TEST_F(BrnkregsTest, AnEntryIsCreatedAsANumber) {
  EXPECT_TRUE(entries.CreateRegEntry(4, L"Name", std::uint32_t{17}));
  EXPECT_EQ(registry::read(Root::LocalMachine, appKey.path(), L"Name"), Value(std::uint32_t{17}));
}

TEST_F(BrnkregsTest, AnEntryOfAnotherTypeCreatesTheKeyAndWritesNothing) {
  EXPECT_TRUE(entries.CreateRegEntry(3, L"Name", L"text"s));
  EXPECT_TRUE(registry::keyExists(Root::LocalMachine, appKey.path()));
  EXPECT_FALSE(registry::read(Root::LocalMachine, appKey.path(), L"Name").has_value());
}

TEST_F(BrnkregsTest, SettingNeedsTheKey) {
  EXPECT_FALSE(entries.SetAppRegValue(L"Name", 1, L"text"s));
  EXPECT_FALSE(entries.SetAppRegValue(L"Name", 3, L"text"s));
  appKey.create();
  EXPECT_TRUE(entries.SetAppRegValue(L"Name", 1, L"text"s));
  EXPECT_EQ(registry::read(Root::LocalMachine, appKey.path(), L"Name"), Value(L"text\0"s));
  EXPECT_TRUE(entries.SetAppRegValue(L"Name", 4, std::uint32_t{9}));
  EXPECT_EQ(registry::read(Root::LocalMachine, appKey.path(), L"Name"), Value(std::uint32_t{9}));
}

TEST_F(BrnkregsTest, SettingAnotherTypeWritesNothing) {
  appKey.create();
  EXPECT_TRUE(entries.SetAppRegValue(L"Name", 7, L"text"s));
  EXPECT_FALSE(registry::read(Root::LocalMachine, appKey.path(), L"Name").has_value());
}

TEST_F(BrnkregsTest, ATextIsReadWithItsTerminatingZero) {
  entries.CreateRegEntry(1, L"Name", L"text"s);
  EXPECT_EQ(entries.GetAppRegValue(L"Name", 1), Value(L"text\0"s));
}

TEST_F(BrnkregsTest, ANumberIsRead) {
  entries.CreateRegEntry(4, L"Name", std::uint32_t{17});
  EXPECT_EQ(entries.GetAppRegValue(L"Name", 4), Value(std::uint32_t{17}));
  EXPECT_EQ(entries.GetAppRegValue(L"Name", 1), Value(std::uint32_t{17}));
}

TEST_F(BrnkregsTest, AnotherTypeReadsAsTheNumberOne) {
  appKey.create();
  EXPECT_EQ(entries.GetAppRegValue(L"Name", 0), Value(std::uint32_t{1}));
}

TEST_F(BrnkregsTest, AMissingValueIsNotRead) {
  EXPECT_FALSE(entries.GetAppRegValue(L"Name", 1).has_value());
  appKey.create();
  EXPECT_FALSE(entries.GetAppRegValue(L"Name", 1).has_value());
  EXPECT_FALSE(entries.GetAppRegValue(L"Name", 4).has_value());
}

TEST_F(BrnkregsTest, ATextFitsABufferOf255Characters) {
  entries.CreateRegEntry(1, L"Name", std::wstring(254, L'x'));
  EXPECT_EQ(entries.GetAppRegValue(L"Name", 1), Value(std::wstring(254, L'x') + L'\0'));
  entries.CreateRegEntry(1, L"Name", std::wstring(255, L'x'));
  EXPECT_FALSE(entries.GetAppRegValue(L"Name", 1).has_value());
}

TEST_F(BrnkregsTest, ATextReadAsANumberHasABufferOfFourCharacters) {
  entries.CreateRegEntry(1, L"Name", L"text"s);
  EXPECT_FALSE(entries.GetAppRegValue(L"Name", 4).has_value());
  entries.CreateRegEntry(1, L"Name", L"abc"s);
  EXPECT_EQ(entries.GetAppRegValue(L"Name", 4), Value(L"abc\0"s));
}

TEST_F(BrnkregsTest, GetRegValueDropsTheTerminatingZero) {
  entries.CreateRegEntry(1, L"Name", L"text"s);
  EXPECT_EQ(entries.GetRegValue(L"Name", L"default"), L"text");
}

TEST_F(BrnkregsTest, GetRegValueCreatesAMissingValueWithTheDefault) {
  EXPECT_EQ(entries.GetRegValue(L"Name", L"x"), L"x");
  EXPECT_EQ(registry::read(Root::LocalMachine, appKey.path(), L"Name"), Value(L"x\0"s));
}

TEST_F(BrnkregsTest, GetRegValueCreatesNothingForAnEmptyDefault) {
  EXPECT_EQ(entries.GetRegValue(L"Name", L""), L"");
  EXPECT_FALSE(registry::keyExists(Root::LocalMachine, appKey.path()));
}

TEST_F(BrnkregsTest, GetRegValueGivesANumberAsText) {
  entries.CreateRegEntry(4, L"Name", std::uint32_t{17});
  EXPECT_EQ(entries.GetRegValue(L"Name", L"x"), L"17");
  entries.CreateRegEntry(4, L"Name", std::uint32_t{4294967295});
  EXPECT_EQ(entries.GetRegValue(L"Name", L"x"), L"-1");
}

TEST_F(BrnkregsTest, DeletingRemovesTheKeyItself) {
  EXPECT_FALSE(entries.DeleteAllAppRegEntries());
  entries.CreateRegEntry(1, L"Name", L"text"s);
  EXPECT_TRUE(entries.DeleteAllAppRegEntries());
  EXPECT_FALSE(registry::keyExists(Root::LocalMachine, appKey.path()));
}

}  // namespace
}  // namespace tlpacscfg::test
