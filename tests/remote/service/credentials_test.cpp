#include <httplib.h>
#include <sys/stat.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>

#include "harness/scratch.h"
#include "remote/service/service_fixture.h"
#include "service/job.h"
#include "service/private_file.h"
#include "service/token.h"

namespace tlpacscfg::test {
namespace {

using nlohmann::json;
using service::OptionError;
using service::Rights;
using service::StatementKind;
using service::TokenFile;
using service::Tokens;

constexpr const char* kOther = "another-token-of-another-person";
constexpr const char* kReading = "a-token-that-may-only-read";

void setMode(const std::string& file, unsigned mode) {
  std::filesystem::permissions(file, static_cast<std::filesystem::perms>(mode));
}

TEST(PrivateFileTest, ItsOwnerMayChangeItAndItsGroupMayReadIt) {
  const auto privateWith = [](mode_t mode, uid_t owner) {
    struct stat status {};
    status.st_mode = mode;
    status.st_uid = owner;
    return service::whyNotPrivate(status, 1000).empty();
  };
  for (const mode_t mode : {0600U, 0400U, 0640U, 0440U, 0700U}) {
    EXPECT_TRUE(privateWith(S_IFREG | mode, 1000)) << std::oct << mode;
    EXPECT_TRUE(privateWith(S_IFREG | mode, 0)) << std::oct << mode;
    EXPECT_FALSE(privateWith(S_IFREG | mode, 1001)) << std::oct << mode;
  }
  for (const mode_t mode : {0604U, 0602U, 0601U, 0620U, 0660U, 0644U, 0666U}) {
    EXPECT_FALSE(privateWith(S_IFREG | mode, 1000)) << std::oct << mode;
  }
  for (const int type : {S_IFDIR, S_IFIFO, S_IFCHR, S_IFSOCK}) {
    EXPECT_FALSE(privateWith(static_cast<mode_t>(type) | 0600U, 1000)) << std::oct << type;
  }
}

class TokensTest : public CoreTest {
 protected:
  TokenFile file(const std::string& name, const std::string& secret,
                 Rights rights = Rights::ReadAndWrite) const {
    const std::string path = scratchUnixPath(name);
    writeBytes(platformPath(path), secret);
    setMode(path, 0600);
    return {name, rights, path};
  }

  static void expectRefused(const std::vector<TokenFile>& files, const std::string& complaint) {
    try {
      const Tokens tokens(files);
      ADD_FAILURE() << complaint;
    } catch (const OptionError& error) {
      EXPECT_NE(std::string(error.what()).find(complaint), std::string::npos) << error.what();
    }
  }
};

TEST_F(TokensTest, EachIsFoundByItsSecretAndNoOther) {
  const Tokens tokens({file("anna", std::string(kToken) + "\n"),
                       file("bob", std::string("\xEF\xBB\xBF") + kOther + " \r\nsecond line"),
                       file("carla", kReading, Rights::Read)});
  const std::pair<std::string, const char*> known[] = {
      {kToken, "anna"}, {kOther, "bob"}, {kReading, "carla"}};
  for (const auto& [secret, name] : known) {
    const service::Token* const token = tokens.find(secret);
    ASSERT_NE(token, nullptr) << name;
    EXPECT_EQ(token->name, name);
    EXPECT_EQ(token->rights == Rights::Read, secret == kReading);
    EXPECT_EQ(tokens.find(secret + "x"), nullptr);
    EXPECT_EQ(tokens.find(secret.substr(1)), nullptr);
  }
  EXPECT_EQ(tokens.find(""), nullptr);
  EXPECT_EQ(tokens.find("anna"), nullptr);
}

TEST_F(TokensTest, SixteenCharactersAreEnough) {
  EXPECT_NE(Tokens({file("anna", "sixteen-letters-")}).find("sixteen-letters-"), nullptr);
}

TEST_F(TokensTest, OnePersonMayHaveTwo) {
  TokenFile old = file("anna", kToken);
  TokenFile next = file("anna-next", kOther);
  next.name = old.name;
  const Tokens tokens({old, next});
  EXPECT_EQ(tokens.find(kToken)->name, "anna");
  EXPECT_EQ(tokens.find(kOther)->name, "anna");
}

TEST_F(TokensTest, OnesThatAreNotSafeAreRefused) {
  expectRefused({file("anna", kToken), file("bob", kToken, Rights::Read)},
                "the tokens 'anna' and 'bob' are the same");
  expectRefused({file("anna", "fifteen-letters")}, "has fewer than 16 characters");
  expectRefused({file("anna", "\n" + std::string(kToken))}, "is empty");
  expectRefused({{"anna", Rights::Read, "/nowhere"}}, "the token file '/nowhere' cannot be read");
  expectRefused({{"anna", Rights::Read, "/dev/null"}}, "is not a file");
  expectRefused({{"anna", Rights::Read, scratchUnixPath("")}}, "is not a file");
  const std::string pipe = scratchUnixPath("pipe");
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  expectRefused({{"anna", Rights::Read, pipe}}, "is not a file");
  TokenFile open = file("anna", kToken);
  setMode(open.path, 0644);
  expectRefused({open}, "anna' can be read or changed by others (mode 644)");
}

class CredentialsTest : public ServiceTest {
 protected:
  void addToken(const std::string& name, const std::string& rights, const std::string& secret) {
    service.tokens.push_back(name + " = " + rights + ", " + service.writeFile(name, secret));
  }

  int statusWith(const std::string& token) const {
    return ask("connect", {{"application", "x"}}, token).status;
  }

  /// Sends SIGHUP and waits until the journal has this text.
  void reload(const std::string& line) {
    kill(service.pid(), SIGHUP);
    ASSERT_TRUE(eventually([&] { return service.logHolds(line); })) << service.log();
  }
};

constexpr const char* kReloaded = " event=reloaded";
constexpr const char* kNotReloaded = " event=reload-failed error=\"";

TEST_F(CredentialsTest, EachPersonHasOne) {
  addToken("anna", "read-write", kOther);
  addToken("bob", "read", kReading);
  ASSERT_TRUE(service.start()) << service.log();
  for (const char* token : {kToken, kOther, kReading}) EXPECT_EQ(statusWith(token), 200) << token;
  EXPECT_EQ(statusWith("a-token-that-nobody-has"), 401);
  for (const char* token : {"default", "anna", "bob", "-"}) {
    EXPECT_TRUE(eventually([&] { return service.logHolds(std::string(" token=") + token + " "); }))
        << token;
  }
}

TEST_F(CredentialsTest, OneThatMayOnlyReadQueriesAndListsAndDoesNotExecute) {
  addToken("bob", "read", kReading);
  addToken("anna", "read-write", kOther);
  ASSERT_TRUE(service.start()) << service.log();
  const json statement = {{"database", "Talora"}, {"sql", "DELETE FROM System_pc_names"}};
  addWorkstation(L"READ-01");
  const ServiceAnswer refused = ask("execute", statement, kReading);
  EXPECT_EQ(refused.status, 403);
  EXPECT_EQ(refused.body, json({{"error", "The token does not allow changes."}}));
  EXPECT_EQ(site.value(L"select count(*) from System_pc_names"), L"1");
  const json query = {{"database", "Talora"}, {"sql", "select pc_name from System_pc_names"}};
  EXPECT_EQ(ask("query", query, kReading).body["tables"][0]["rows"][0][0], "READ-01");
  EXPECT_EQ(ask("execute", statement, kOther).status, 200);
  EXPECT_EQ(site.value(L"select count(*) from System_pc_names"), L"0");
}

TEST_F(CredentialsTest, AQueryWithOneThatMayOnlyReadStoresNothing) {
  addToken("bob", "read", kReading);
  ASSERT_TRUE(service.start()) << service.log();
  const auto queryWith = [&](const std::string& sql, const std::string& token) {
    return ask("query", {{"database", "Talora"}, {"sql", sql}}, token).status;
  };
  const std::string insert = "INSERT INTO System_pc_names VALUES('A', '', 1)";
  for (const std::string& text :
       {insert + " RETURNING pc_name", "SELECT 1\r\n" + insert, "SELECT 1; COMMIT; " + insert,
        "WITH x AS (SELECT 1) " + insert, "SELECT 1 --'\n" + insert + "; COMMIT --'",
        "SELECT 1 /*'*/; " + insert + "; COMMIT --'", "SELECT 1" + insert}) {
    EXPECT_EQ(queryWith(text, kReading), 403) << text;
  }
  EXPECT_EQ(site.value(L"select count(*) from System_pc_names"), L"0");
  EXPECT_EQ(queryWith("SELECT pc_name FROM System_pc_names", kReading), 200);
}

TEST_F(CredentialsTest, AChangeThatIsNotRecognisedAsOneIsRolledBack) {
  const auto performAs = [](StatementKind kind) {
    const tlpacscfg::service::Request job(
        tlpacscfg::service::jobOf({.kind = kind,
                                   .connectString = "DSN=TlTestSite;",
                                   .directory = std::getenv("TL_SCRATCH"),
                                   .sql = "INSERT INTO System_pc_names VALUES('A', '', 1)"}));
    tlpacscfg::service::perform(job, {.answerBytes = 1000});
    std::_Exit(0);
  };
  // In a process of its own, as the service does it.
  EXPECT_EXIT(performAs(StatementKind::Read), ::testing::ExitedWithCode(0), "");
  EXPECT_EQ(site.value(L"select count(*) from System_pc_names"), L"0");
  EXPECT_EXIT(performAs(StatementKind::Query), ::testing::ExitedWithCode(0), "");
  EXPECT_EQ(site.value(L"select count(*) from System_pc_names"), L"1");
}

TEST_F(CredentialsTest, AreReadAgainWithoutARestart) {
  ASSERT_TRUE(service.start()) << service.log();
  EXPECT_EQ(statusWith(kOther), 401);
  service.writeFile("token", kOther);
  addToken("bob", "read", kReading);
  service.writeConfiguration();
  EXPECT_EQ(statusWith(kReading), 401);
  reload(kReloaded);
  EXPECT_EQ(statusWith(kOther), 200);
  EXPECT_EQ(statusWith(kReading), 200);
  EXPECT_EQ(statusWith(kToken), 401);
}

TEST_F(CredentialsTest, AConnectionFinishesWithThoseThatItBeganWith) {
  ASSERT_TRUE(service.start()) << service.log();
  const std::string body = json{{"token", kToken}, {"application", "x"}}.dump();
  const RawClient client(service.port());
  client.send(httpRequest("POST /v1/connect HTTP/1.1",
                          "Content-Type: application/json\r\nExpect: 100-continue\r\n"
                          "Content-Length: " +
                              std::to_string(body.size()) + "\r\n"));
  ASSERT_TRUE(client.hasInput());
  service.writeFile("token", kOther);
  reload(kReloaded);
  EXPECT_EQ(statusWith(kToken), 401);
  client.send(body);
  EXPECT_NE(client.readToEnd().find("200 OK"), std::string::npos);
}

TEST_F(CredentialsTest, TheOldOnesStayWhenTheNewOnesCannotBeUsed) {
  ASSERT_TRUE(service.start()) << service.log();
  service.writeFile("token", kOther);
  setMode(service.tokenFile(), 0644);
  reload(kNotReloaded + ("the token file '" + service.tokenFile()) +
         "' can be read or changed by others (mode 644)");
  EXPECT_EQ(statusWith(kToken), 200);
  EXPECT_EQ(statusWith(kOther), 401);
  setMode(service.configurationFile(), 0640 | 0020);
  reload(kNotReloaded + ("the configuration file '" + service.configurationFile()));
  EXPECT_EQ(statusWith(kToken), 200);
}

TEST_F(CredentialsTest, ACertificateIsReplacedWithoutARestart) {
  ASSERT_TRUE(service.startWithTls()) << service.log();
  const auto trusts = [this](const std::string& certificate) {
    httplib::Client client("https://localhost:" + std::to_string(service.port()));
    client.set_ca_cert_path(certificate);
    const json body = {{"token", kToken}, {"application", "x"}};
    const httplib::Result result = client.Post("/v1/connect", body.dump(), "application/json");
    return result && result->status == 200;
  };
  const std::string old = scratchUnixPath("old.pem");
  std::filesystem::copy_file(service.certificateFile(), old);
  EXPECT_TRUE(trusts(old));
  service.makeCertificate();
  const std::string key = scratchUnixPath("service/key.pem");
  const std::string newKey = readBytes(platformPath(key));
  service.writeFile("key.pem", "no key");
  reload(kNotReloaded + ("the key '" + key) + "' cannot be used with the certificate");
  EXPECT_TRUE(trusts(old));
  service.writeFile("key.pem", newKey);
  reload(kReloaded);
  EXPECT_TRUE(trusts(service.certificateFile()));
  EXPECT_FALSE(trusts(old));
}

TEST_F(CredentialsTest, FilesThatOthersCanReadAreRefusedAtTheStart) {
  service.makeCertificate();
  service.writeConfiguration();
  const std::string key = scratchUnixPath("service/key.pem");
  for (const std::string& file : {service.tokenFile(), service.configurationFile(), key}) {
    setMode(file, 0604);
    EXPECT_EQ(service.runToEnd({"--config", service.configurationFile(), "--certificate",
                                service.certificateFile(), "--key", key}),
              2);
    EXPECT_TRUE(service.logHolds(" '" + file + "' can be read or changed by others (mode 604): "))
        << service.log();
    setMode(file, 0600);
  }
}

}  // namespace
}  // namespace tlpacscfg::test
