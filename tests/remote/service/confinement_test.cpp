#include "service/confinement.h"

#include <fcntl.h>
#include <netinet/in.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "harness/scratch.h"
#include "remote/harness/denied_call.h"
#include "remote/service/service_fixture.h"

namespace tlpacscfg::test {
namespace {

using ::testing::ExitedWithCode;

std::string textOf(const std::string& file) {
  std::ifstream stream(file);
  return {std::istreambuf_iterator<char>(stream), {}};
}

/// The error that this kernel gives for what Landlock denies from that version on; without it the
/// attempt succeeds, or ends as it would anyhow.
int denied(int version, int error = EACCES, int otherwise = 0) {
  return service::landlockVersion() >= version ? error : otherwise;
}

/// 0 or the error.
int outcomeOfOpening(const std::string& file, int flags) {
  const int opened = open(file.c_str(), flags | O_CLOEXEC, 0600);
  return opened < 0 ? errno : 0;
}

int outcomeOfConnecting() {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(9);
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  const int client = socket(AF_INET, SOCK_STREAM, 0);
  return connect(client, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) == 0 ? 0
                                                                                            : errno;
}

class ConfinementTest : public CoreTest {
 protected:
  ConfinementTest() {
    makeDirectory(scratchPath(L"own"));
    writeBytes(scratchPath(L"own/a"), "a");
    writeBytes(scratchPath(L"secret"), "secret");
  }

  const std::string own = scratchUnixPath("own");
};

TEST_F(ConfinementTest, OnlyTheOwnDirectoryAndLibrariesCanBeOpened) {
  const struct {
    std::string file;
    int flags;
    int outcome;
  } cases[] = {
      {own + "/a", O_RDWR, 0},
      {own + "/new", O_RDWR | O_CREAT, 0},
      {"/usr/bin/env", O_RDONLY, 0},
      {"/dev/null", O_RDWR, 0},
      {scratchUnixPath("secret"), O_RDONLY, denied(1)},
      {scratchUnixPath("new"), O_RDWR | O_CREAT, denied(1)},
      {own + "/../secret", O_RDONLY, denied(1)},
      {"/etc/passwd", O_RDONLY, denied(1)},
      {"/etc", O_RDONLY | O_DIRECTORY, denied(1)},
      {"/usr/bin/env", O_RDWR, geteuid() == 0 ? denied(1) : EACCES},
  };
  for (const auto& opening : cases) {
    const auto attempt = [&] {
      service::confine(own, service::Access::ReadAndWrite);
      std::_Exit(outcomeOfOpening(opening.file, opening.flags));
    };
    EXPECT_EXIT(attempt(), ExitedWithCode(opening.outcome), "") << opening.file;
  }
}

TEST_F(ConfinementTest, ADirectoryThatIsListedCannotBeRead) {
  const auto attempt = [&](const std::string& file, int flags) {
    service::confine(own, service::Access::List);
    std::_Exit(outcomeOfOpening(file, flags));
  };
  EXPECT_EXIT(attempt(own, O_RDONLY | O_DIRECTORY), ExitedWithCode(0), "");
  EXPECT_EXIT(attempt(own + "/a", O_RDONLY), ExitedWithCode(denied(1)), "");
}

TEST_F(ConfinementTest, NothingElseIsReachedFromInside) {
  EXPECT_EXIT(
      {
        service::confine("", service::Access::List);
        std::_Exit(outcomeOfConnecting());
      },
      ExitedWithCode(denied(4, EACCES, ECONNREFUSED)), "");
  EXPECT_EXIT(
      {
        service::confine("", service::Access::List);
        std::_Exit(kill(getppid(), 0) == 0 ? 0 : errno);
      },
      ExitedWithCode(denied(6, EPERM)), "");
}

TEST_F(ConfinementTest, TheMemoryOfAProcessWithoutRightsIsHidden) {
  EXPECT_EXIT(
      {
        service::dropRights();
        std::_Exit(prctl(PR_GET_DUMPABLE) == 0 ? 0 : 1);
      },
      ExitedWithCode(0), "");
}

TEST_F(ConfinementTest, ALimitThatCannotBeSetIsAnError) {
  const auto attempt = [] {
    denyCall(SYS_prlimit64, RLIMIT_DATA, EPERM);
    try {
      service::limitMemory(1000);
    } catch (const std::system_error&) {
      std::_Exit(3);
    }
    std::_Exit(0);
  };
  EXPECT_EXIT(attempt(), ExitedWithCode(3), "");
}

/// Two databases, each in a directory of its own.
class ConfinedStatementTest : public ServiceTest {
 protected:
  ConfinedStatementTest() {
    service.databases.clear();
    service.databaseFiles.clear();
    for (const std::string name : {"Talora", "Other"}) {
      const std::string directory = scratchUnixPath(name);
      std::filesystem::create_directory(directory);
      std::string database = name;
      database.append(" = Driver={SQLite3};Database=").append(directory).append("/site.db;");
      service.databases.push_back(database);
      service.databaseFiles.push_back(name);
      service.databaseFiles.back().append(" = ").append(directory);
    }
  }

  void startService(const std::vector<std::string>& arguments = {}) {
    ASSERT_TRUE(service.start(arguments)) << service.log();
    for (const char* name : {"Talora", "Other"}) {
      const auto sql = "CREATE TABLE t AS SELECT '" + std::string(name) + "' AS name";
      EXPECT_EQ(ask("execute", {{"database", name}, {"sql", sql}}).status, 200) << name;
    }
  }

  ServiceAnswer attach(const std::string& file) const {
    return query("ATTACH '" + file + "' AS x\r\n\r\nSELECT name FROM x.t");
  }

  pid_t beginEndless(const RawClient& client) const {
    const nlohmann::json body = {{"token", kToken}, {"database", "Talora"}, {"sql", kEndless}};
    client.send(properRequest("/v1/query", body.dump()));
    EXPECT_TRUE(eventually([this] { return !service.children().empty(); }));
    const std::vector<pid_t> running = service.children();
    return running.empty() ? 0 : running.front();
  }
};

TEST_F(ConfinedStatementTest, ItReadsNoFileOfAnother) {
  startService();
  if (service::landlockVersion() == 0) {
    EXPECT_EQ(attach(scratchUnixPath("Other/site.db")).status, 200) << "As the documents say.";
    return;
  }
  for (const std::string& file : {scratchUnixPath("Other/site.db"), service.tokenFile(),
                                  service.configurationFile(), scratchUnixPath("odbc.ini")}) {
    const ServiceAnswer answer = attach(file);
    EXPECT_EQ(answer.status, 422) << file;
    EXPECT_NE(answer.body["error"].get<std::string>().find("unable to open database"),
              std::string::npos)
        << answer.body;
  }
  EXPECT_EQ(attach(scratchUnixPath("Talora/site.db")).body["tables"][0]["rows"],
            nlohmann::json({{"Talora"}}));
  EXPECT_EQ(query("ATTACH '" + scratchUnixPath("prompts/new.db") +
                  "' AS x\r\n\r\nINSERT INTO x.t VALUES(1)")
                .status,
            422);
  EXPECT_FALSE(std::filesystem::exists(scratchUnixPath("prompts/new.db")));
}

TEST_F(ConfinedStatementTest, WithoutLandlockTheJournalTells) {
  startService();
  const std::string version = std::to_string(service::landlockVersion());
  EXPECT_TRUE(
      eventually([&] { return service.logHolds("event=confinement landlock=" + version + "\n"); }));
  EXPECT_EQ(service.end(SIGTERM), 0);
  service.beforeStart = [] { denyCall(SYS_landlock_create_ruleset, ENOSYS); };
  ASSERT_TRUE(service.start()) << service.log();
  EXPECT_TRUE(eventually([this] { return service.logHolds("event=confinement landlock=0"); }));
  EXPECT_EQ(attach(scratchUnixPath("Other/site.db")).status, 200);
}

TEST_F(ConfinedStatementTest, ALandlockThatFailsRunsNoStatement) {
  service.beforeStart = [] { denyCall(SYS_landlock_restrict_self, EPERM); };
  ASSERT_TRUE(service.start()) << service.log();
  const int expected = denied(1, 422, 200);
  EXPECT_EQ(query("CREATE TABLE t(a)").status, expected);
  EXPECT_EQ(query("SELECT 1").status, expected);
  expectStillServing();
}

TEST_F(ConfinedStatementTest, ItHasNoRightsAndIsTheFirstToEndWithoutMemory) {
  startService();
  const RawClient client(service.port());
  const std::string process = "/proc/" + std::to_string(beginEndless(client));
  EXPECT_TRUE(eventually([&] { return textOf(process + "/oom_score_adj") == "1000\n"; }));
  const auto holds = [&](const char* line) {
    return eventually([&] { return textOf(process + "/status").find(line) != std::string::npos; });
  };
  EXPECT_TRUE(holds("NoNewPrivs:\t1\n"));
  EXPECT_TRUE(holds("CapPrm:\t0000000000000000\n"));
  EXPECT_TRUE(holds("CapEff:\t0000000000000000\n"));
  EXPECT_EQ(std::filesystem::read_symlink(process + "/fd/1"), "/dev/null");
  EXPECT_EQ(std::filesystem::read_symlink(process + "/fd/2"), "/dev/null");
}

TEST_F(ConfinedStatementTest, ItLeavesNoCoreFile) {
  startService();
  const RawClient client(service.port());
  for (const pid_t one : {service.pid(), beginEndless(client)}) {
    const std::string limits = "/proc/" + std::to_string(one) + "/limits";
    EXPECT_TRUE(eventually([&] {
      return textOf(limits).find("Max core file size        0                    0") !=
             std::string::npos;
    })) << textOf(limits);
  }
}

TEST_F(ConfinedStatementTest, AServiceWhoseMemoryCannotBeLimitedDoesNotStart) {
  service.beforeStart = [] { denyCall(SYS_prlimit64, RLIMIT_DATA, EPERM); };
  EXPECT_FALSE(service.start());
  EXPECT_TRUE(service.logHolds("tlcommd: RLIMIT_DATA")) << service.log();
}

/// Sanitizers report into a file of the test: here it is the limit that ends the process.
class ReportingTest : public ConfinedStatementTest {
 protected:
  ReportingTest() {
    std::filesystem::create_directory(scratchUnixPath("findings"));
    service.beforeStart = [] {
      // Newer sanitizers keep a second stack for each thread, which would count as the service's
      // memory.
      const std::string options =
          "detect_stack_use_after_return=0:log_path=" + scratchUnixPath("findings/found");
      // All in one program: the last that is read wins.
      for (const char* const name : {"ASAN_OPTIONS", "UBSAN_OPTIONS", "LSAN_OPTIONS"}) {
        setenv(name, options.c_str(), 1);
      }
    };
  }

  static std::string findings() {
    std::string all;
    for (const auto& file : std::filesystem::directory_iterator(scratchUnixPath("findings"))) {
      all += textOf(file.path());
    }
    return all;
  }
};

TEST_F(ReportingTest, AStatementGetsNoMoreMemoryThanItsLimit) {
  const char* const large = "SELECT length(hex(zeroblob(100000000)))";
  startService({"--memory-megabytes", "1024"});
  EXPECT_EQ(query(large).body["tables"][0]["rows"], nlohmann::json({{"200000000"}}));
  EXPECT_EQ(findings(), "");
  EXPECT_EQ(service.end(SIGTERM), 0);
  ASSERT_TRUE(service.start({"--memory-megabytes", "128"})) << service.log();
  EXPECT_EQ(query(large).status, 422);
  EXPECT_EQ(query("SELECT 1").status, 200);
#ifdef TL_SANITIZED
  EXPECT_NE(findings().find("out-of-memory"), std::string::npos) << findings();
#endif
}

#ifdef TL_SANITIZED
TEST_F(ReportingTest, AFindingInAStatementReachesItsFile) {
  startService();
  const RawClient client(service.port());
  const pid_t process = beginEndless(client);
  EXPECT_TRUE(eventually(
      [&] { return textOf("/proc/" + std::to_string(process) + "/oom_score_adj") == "1000\n"; }));
  kill(process, SIGSEGV);
  EXPECT_NE(client.readToEnd().find("The database driver broke down."), std::string::npos);
  EXPECT_NE(findings().find("SEGV"), std::string::npos);
}
#endif

TEST_F(ConfinedStatementTest, OneThatCannotBeStartedTakesNoPlace) {
  service.beforeStart = [] { denyCall(SYS_socketpair, EMFILE); };
  // One place.
  ASSERT_TRUE(service.start(
      {"--statement-seconds", "1", "--memory-megabytes", "1024", "--total-megabytes", "2048"}))
      << service.log();
  for (int i = 0; i < 2; ++i) {
    const ServiceAnswer refused = query("SELECT 1");
    EXPECT_EQ(refused.status, 422);
    EXPECT_EQ(refused.body["error"], "The service could not do that.");
  }
}

TEST_F(ConfinedStatementTest, NoMoreRunThanTheMemoryForAllAllows) {
  startService(
      {"--statement-seconds", "1", "--memory-megabytes", "1024", "--total-megabytes", "3072"});
  const RawClient running[] = {RawClient(service.port()), RawClient(service.port())};
  for (const RawClient& client : running) beginEndless(client);
  EXPECT_TRUE(eventually([this] { return service.children().size() == 2; }));
  const ServiceAnswer refused = query("SELECT 1");
  EXPECT_EQ(refused.status, 503);
  EXPECT_EQ(refused.body["error"],
            "The service is running as many statements as its memory allows.");
  for (const RawClient& client : running) client.readToEnd();
  EXPECT_EQ(query("SELECT 1").status, 200);
}

}  // namespace
}  // namespace tlpacscfg::test
