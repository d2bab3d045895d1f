#include "support/registry.h"

#include "harness/registry_key.h"

namespace tlpacscfg::test {
namespace {

using registry::Root;
using registry::Value;
using namespace std::string_literals;

class RegistryTest : public ::testing::TestWithParam<Root> {
 protected:
  RegistryKey key{GetParam()};
};

TEST_P(RegistryTest, AMissingKeyHasNoValues) {
  EXPECT_FALSE(registry::keyExists(GetParam(), key.path()));
  EXPECT_FALSE(registry::read(GetParam(), key.path(), L"Name").has_value());
  EXPECT_FALSE(registry::write(GetParam(), key.path(), L"Name", L"text"s));
  EXPECT_FALSE(registry::deleteKey(GetParam(), key.path()));
}

TEST_P(RegistryTest, TextComesBackWithItsTerminatingZero) {
  key.create();
  EXPECT_TRUE(registry::write(GetParam(), key.path(), L"Name", L"Zürich"s));
  EXPECT_EQ(registry::read(GetParam(), key.path(), L"NAME"), Value(L"Zürich\0"s));
}

TEST_P(RegistryTest, AnEmptyTextHasNoTerminatingZero) {
  key.create();
  EXPECT_TRUE(registry::write(GetParam(), key.path(), L"Name", L""s));
  EXPECT_EQ(registry::read(GetParam(), key.path(), L"Name"), Value(L""s));
}

TEST_P(RegistryTest, NumbersComeBackAsNumbers) {
  key.create();
  EXPECT_TRUE(registry::write(GetParam(), key.path(), L"Name", std::uint32_t{4294967295}));
  EXPECT_EQ(registry::read(GetParam(), key.path(), L"Name"), Value(std::uint32_t{4294967295}));
}

TEST_P(RegistryTest, AValueIsReplacedByTheNext) {
  key.create();
  registry::write(GetParam(), key.path(), L"Name", std::uint32_t{1});
  registry::write(GetParam(), key.path(), L"name", L"two"s);
  EXPECT_EQ(registry::read(GetParam(), key.path(), L"Name"), Value(L"two\0"s));
}

TEST_P(RegistryTest, CreatingAKeyCreatesTheKeysAboveIt) {
  key.create();
  RegistryKey below{GetParam(), key.path() + L"\\Between\\Below"};
  EXPECT_TRUE(registry::createKey(GetParam(), below.path()));
  EXPECT_TRUE(registry::keyExists(GetParam(), key.path() + L"\\Between"));
  EXPECT_TRUE(registry::deleteKey(GetParam(), below.path()));
  EXPECT_TRUE(registry::deleteKey(GetParam(), key.path() + L"\\Between"));
}

TEST_P(RegistryTest, CreatingAKeyThatExistsKeepsItsValues) {
  key.create();
  registry::write(GetParam(), key.path(), L"Name", std::uint32_t{1});
  EXPECT_TRUE(registry::createKey(GetParam(), key.path()));
  EXPECT_TRUE(registry::read(GetParam(), key.path(), L"Name").has_value());
}

TEST_P(RegistryTest, AKeyWithSubkeysIsNotDeleted) {
  key.create();
  RegistryKey below{GetParam(), key.path() + L"\\Below"};
  below.create();
  EXPECT_FALSE(registry::deleteKey(GetParam(), key.path()));
  EXPECT_TRUE(registry::keyExists(GetParam(), key.path()));
}

TEST_P(RegistryTest, ADeletedKeyHasLostItsValues) {
  key.create();
  registry::write(GetParam(), key.path(), L"Name", std::uint32_t{1});
  EXPECT_TRUE(registry::deleteKey(GetParam(), key.path()));
  key.create();
  EXPECT_FALSE(registry::read(GetParam(), key.path(), L"Name").has_value());
}

INSTANTIATE_TEST_SUITE_P(Roots, RegistryTest,
                         ::testing::Values(Root::LocalMachine, Root::CurrentUser),
                         [](const auto& root) {
                           return root.param == Root::LocalMachine ? "LocalMachine" : "CurrentUser";
                         });

class ReadRegStringTest : public ::testing::Test {
 protected:
  ReadRegStringTest() { key.create(); }
  std::wstring readBack(const Value& value) {
    EXPECT_TRUE(registry::write(Root::CurrentUser, key.path(), L"Name", value));
    return ReadRegString(Root::CurrentUser, key.path(), L"Name");
  }

  RegistryKey key{Root::CurrentUser};
};

TEST_F(ReadRegStringTest, TextIsReadWithoutItsTerminatingZero) {
  EXPECT_EQ(readBack(L"site"s), L"site");
}

TEST_F(ReadRegStringTest, WhatIsMissingOrNoTextIsEmpty) {
  EXPECT_EQ(ReadRegString(Root::CurrentUser, key.path() + L"\\Missing", L"Name"), L"");
  EXPECT_EQ(ReadRegString(Root::CurrentUser, key.path(), L"Missing"), L"");
  EXPECT_EQ(readBack(L""s), L"");
  EXPECT_EQ(readBack(std::uint32_t{7}), L"");
}

TEST_F(ReadRegStringTest, ATextThatFillsTheBufferIsRead) {
  EXPECT_EQ(readBack(std::wstring(255, L'x')), std::wstring(255, L'x'));
}

TEST_F(ReadRegStringTest, ALongerTextIsEmptyText) {
  EXPECT_EQ(readBack(std::wstring(256, L'x')), L"");
}

}  // namespace
}  // namespace tlpacscfg::test
