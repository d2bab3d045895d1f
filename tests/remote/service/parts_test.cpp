#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "harness/core_fixture.h"
#include "harness/scratch.h"
#include "service/directories.h"
#include "service/options.h"
#include "service/refusal.h"
#include "shared/loopback.h"

namespace tlpacscfg::test {
namespace {

using service::applyConfiguration;
using service::FileQuery;
using service::listFiles;
using service::OptionError;
using service::ServiceOptions;
using service::SharedDirectory;

class SharedDirectoryTest : public CoreTest {
 protected:
  SharedDirectoryTest() {
    makeDirectory(scratchPath(L"root/Sub/Deeper"));
    makeDirectory(scratchPath(L"outside"));
    writeBytes(scratchPath(L"root/top.xml"), "");
    writeBytes(scratchPath(L"root/Sub/below.xml"), "");
    writeBytes(scratchPath(L"outside/secret.xml"), "");
    std::filesystem::create_symlink(scratchUnixPath("outside"), scratchUnixPath("root/way-out"));
    std::filesystem::create_symlink(scratchUnixPath("outside/secret.xml"),
                                    scratchUnixPath("root/linked.xml"));
  }

  std::vector<std::wstring> list(const std::wstring& directory,
                                 const std::wstring& pattern = L"*.xml") const {
    return listFiles({.place = service::placeOf(shared, directory), .pattern = pattern});
  }

  std::vector<SharedDirectory> shared = {{"Z:\\site", scratchUnixPath("root")}};
};

using Names = std::vector<std::wstring>;

TEST_F(SharedDirectoryTest, WhatLiesBelowASharedDirectoryIsSharedToo) {
  EXPECT_EQ(list(L"Z:\\site"), Names{L"top.xml"});
  EXPECT_EQ(list(L"Z:\\site\\Sub"), Names{L"below.xml"});
  EXPECT_EQ(list(L"z:/SITE//sub\\"), Names{L"below.xml"});
  EXPECT_EQ(list(L"Z:\\site\\sub\\DEEPER"), Names{});
}

TEST_F(SharedDirectoryTest, NothingLeadsOutOfASharedDirectory) {
  for (const wchar_t* directory :
       {L"Z:\\site\\..\\outside", L"Z:\\site\\.\\Sub", L"Z:\\site\\way-out", L"Z:\\outside",
        L"Z:\\site\\Sub\\..\\..\\outside", L"Z:\\site\\top.xml", L"Z:\\site\\C:\\",
        L"\\\\host\\x"}) {
    EXPECT_THROW(list(directory), service::Refusal) << directory;
  }
}

TEST_F(SharedDirectoryTest, LinksAreNotListed) { EXPECT_EQ(list(L"Z:\\site"), Names{L"top.xml"}); }

TEST_F(SharedDirectoryTest, TheDeepestSharedDirectoryAnswers) {
  shared.push_back({"Z:\\site\\Sub", scratchUnixPath("outside")});
  EXPECT_EQ(list(L"Z:\\site\\sub"), Names{L"secret.xml"});
}

TEST_F(SharedDirectoryTest, ANameOfExactlyThatCaseComesFirst) {
  makeDirectory(scratchPath(L"root/SUB"));
  writeBytes(scratchPath(L"root/SUB/other.xml"), "");
  EXPECT_EQ(list(L"Z:\\site\\SUB"), Names{L"other.xml"});
  EXPECT_THROW(list(L"Z:\\site\\sub"), service::Refusal) << "Either could be meant.";
}

TEST_F(SharedDirectoryTest, APatternIsOneForNames) {
  EXPECT_EQ(list(L"Z:\\site", L"*.*"), Names{L"top.xml"});
  for (const std::wstring& pattern :
       {std::wstring(), std::wstring(L"Sub\\*"), std::wstring(L"../*"), std::wstring(256, L'*')}) {
    EXPECT_THROW(list(L"Z:\\site", pattern), service::Refusal) << pattern;
  }
  EXPECT_EQ(list(L"Z:\\site", std::wstring(255, L'*')), Names{L"top.xml"});
}

TEST_F(SharedDirectoryTest, LetterCaseCountsWhenItIsAskedFor) {
  const FileQuery query = {
      .place = service::placeOf(shared, L"Z:\\site"), .pattern = L"*.XML", .ignoreCase = false};
  EXPECT_EQ(listFiles(query), Names{});
}

TEST(LoopbackTest, OnlyThisComputerIsMeant) {
  for (const wchar_t* host : {L"127.0.0.1", L"127.0.0.2", L"127.255.255.255", L"::1", L"[::1]",
                              L"localhost", L"LOCALHOST"}) {
    EXPECT_TRUE(remote::isLoopback(host)) << host;
  }
  for (const wchar_t* host : {L"", L"126.0.0.1", L"128.0.0.1", L"0.0.0.0", L"127.0.0",
                              L"127.0.0.256", L"127.0.0.1.example", L"127.0.0.1x", L"127.0.0.",
                              L"1127.0.0.1", L"::", L"::2", L"localhost.example", L"local"}) {
    EXPECT_FALSE(remote::isLoopback(host)) << host;
  }
}

TEST(OptionsTest, AConfigurationFileHasSettingsDatabasesAndDirectories) {
  ServiceOptions options;
  applyConfiguration(options,
                     "# comment\r\n"
                     "[service]\r\n"
                     "port = 9443\r\n"
                     "workers=3\r\n"
                     "\r\n"
                     "[tokens]\n"
                     "anna = read-write, /etc/anna\n"
                     "bob-2027=read,/etc/b,ob\n"
                     "[databases]\n"
                     "Talora = DSN=Site;UID=sa;PWD=a=b\n"
                     "[database-files]\n"
                     "talora = /srv/talora\n"
                     "[directories]\n"
                     "Z:\\site = /srv/site\n");
  EXPECT_EQ(options.port, 9443);
  EXPECT_EQ(options.workers, 3U);
  ASSERT_EQ(options.tokens.size(), 2U);
  EXPECT_EQ(options.tokens[0].name, "anna");
  EXPECT_EQ(options.tokens[0].rights, service::Rights::ReadAndWrite);
  EXPECT_EQ(options.tokens[0].path, "/etc/anna");
  EXPECT_EQ(options.tokens[1].name, "bob-2027");
  EXPECT_EQ(options.tokens[1].rights, service::Rights::Read);
  EXPECT_EQ(options.tokens[1].path, "/etc/b,ob");
  EXPECT_EQ(options.databases.at("TALORA").connectString, "DSN=Site;UID=sa;PWD=a=b");
  EXPECT_EQ(options.databases.at("TALORA").directory, "/srv/talora");
  ASSERT_EQ(options.directories.size(), 1U);
  EXPECT_EQ(options.directories[0].clientPath, "Z:\\site");
  EXPECT_EQ(options.directories[0].localPath, "/srv/site");
}

TEST(OptionsTest, TheNameOfATokenHas64CharactersAtMost) {
  const auto apply = [](std::size_t length) {
    ServiceOptions options;
    applyConfiguration(options, "[tokens]\n" + std::string(length, 'a') + " = read, /etc/anna\n");
  };
  EXPECT_NO_THROW(apply(1));
  EXPECT_NO_THROW(apply(64));
  EXPECT_THROW(apply(0), OptionError);
  EXPECT_THROW(apply(65), OptionError);
}

TEST(OptionsTest, TheExampleIsAConfiguration) {
  ServiceOptions options;
  applyConfiguration(options, readBytes(sourcePath("remote/service/tlcommd.conf.example")));
  EXPECT_EQ(options.tokens.size(), 1U);
  EXPECT_EQ(options.databases.size(), 1U);
  EXPECT_EQ(options.directories.size(), 1U);
}

TEST(OptionsTest, AWrongLineIsNamed) {
  const std::pair<const char*, const char*> cases[] = {
      {"\n[service]\nport = many\n", "line 3: port: 'many' is not a number from 0 to 65535"},
      {"[service]\nnonsense\n", "line 2: a line is 'name = value'"},
      {"[other]\nx = y\n", "line 2: there is no section [other]"},
      {"x = y", "line 1: there is no section []"},
      {"[tokens]\nanna = all, /etc/anna\n",
       "line 2: a token is 'NAME = read, FILE' or 'NAME = read-write, FILE'"},
      {"[tokens]\nanna = read\n",
       "line 2: a token is 'NAME = read, FILE' or 'NAME = read-write, FILE'"},
      {"[tokens]\nan na = read, /etc/anna\n",
       "line 2: the name of a token has letters, digits, '-', '_' and '.'"},
      {"[service]\nworkers = 0\n", "line 2: workers: '0' is not a number from 1 to 256"},
  };
  for (const auto& [text, complaint] : cases) {
    ServiceOptions options;
    try {
      applyConfiguration(options, text);
      ADD_FAILURE() << text;
    } catch (const OptionError& error) {
      EXPECT_STREQ(error.what(), complaint);
    }
  }
}

}  // namespace
}  // namespace tlpacscfg::test
