#include <csignal>
#include <fstream>
#include <thread>

#include "harness/scratch.h"
#include "odbc/connection.h"
#include "remote/service/service_fixture.h"

namespace tlpacscfg::test {
namespace {

using nlohmann::json;

/// Gives rows forever.
constexpr const char* kEndlessRows =
    "SELECT x FROM (WITH RECURSIVE c(x) AS (SELECT 1 UNION ALL SELECT x + 1 FROM c) "
    "SELECT x FROM c)";
constexpr const char* kTooLong = "The statement took longer than the service allows.";

class StatementTest : public ServiceTest {
 protected:
  void startService(const std::vector<std::string>& arguments) {
    ASSERT_TRUE(service.start(arguments)) << service.log();
  }

  /// What a process may still take, by its command line.
  static int secondsOf(pid_t process) {
    std::ifstream file("/proc/" + std::to_string(process) + "/cmdline");
    std::vector<std::string> arguments;
    for (std::string one; std::getline(file, one, '\0');) arguments.push_back(one);
    return arguments.size() > 3 ? std::stoi(arguments[3]) : 0;
  }

  static std::string requestFor(const std::string& sql) {
    const json body = {{"token", kToken}, {"database", "Talora"}, {"sql", sql}};
    return properRequest("/v1/query", body.dump());
  }

  /// Sends an endless statement, waits until it runs and returns its process.
  pid_t beginEndless(const RawClient& client) {
    client.send(requestFor(kEndless));
    EXPECT_TRUE(eventually([this] { return !service.children().empty(); }));
    const std::vector<pid_t> running = service.children();
    return running.empty() ? 0 : running.front();
  }
};

TEST_F(StatementTest, OneThatTakesTooLongIsEnded) {
  startService({"--statement-seconds", "1"});
  const ServiceAnswer answer = query(kEndless);
  EXPECT_EQ(answer.status, 422);
  EXPECT_EQ(answer.body["error"], kTooLong);
  EXPECT_TRUE(service.children().empty());
  EXPECT_EQ(query("select 1").status, 200);
}

TEST_F(StatementTest, TheWaitForAFreeProcessCounts) {
  // One process at a time.
  startService(
      {"--statement-seconds", "1000", "--memory-megabytes", "1024", "--total-megabytes", "2048"});
  const RawClient first(service.port());
  const RawClient second(service.port());
  const pid_t running = beginEndless(first);
  EXPECT_EQ(secondsOf(running), 1000);
  second.send(requestFor(kEndless));
  std::this_thread::sleep_for(std::chrono::milliseconds(1500));
  kill(running, SIGABRT);
  EXPECT_TRUE(eventually([&] {
    const std::vector<pid_t> now = service.children();
    const int limit = now.empty() || now.front() == running ? 0 : secondsOf(now.front());
    return limit > 0 && limit < 1000;
  }));
}

TEST_F(StatementTest, MoreThanThereAreWorkersStopTheOthersNotForGood) {
  startService({"--statement-seconds", "1", "--workers", "4"});
  const RawClient stuck[] = {RawClient(service.port()), RawClient(service.port()),
                             RawClient(service.port())};
  for (const RawClient& client : stuck) client.send(requestFor(kEndless));
  EXPECT_TRUE(eventually([this] { return service.children().size() == 2; }));
  EXPECT_EQ(query("select 1").status, 200);
  for (const RawClient& client : stuck) {
    EXPECT_NE(client.readToEnd().find(kTooLong), std::string::npos);
  }
}

TEST_F(StatementTest, OneThatWaitsForALockIsEndedAndChangesNothing) {
  startService({"--statement-seconds", "1"});
  const char* const insert = "INSERT INTO System_pc_names VALUES('A', '', 1)";
  {
    odbc::Connection other(
        std::make_shared<odbc::Environment>(odbc::CursorLibrary::NotUsed, std::chrono::seconds(10)),
        L"TlTestSite", odbc::Prompt::Never, L"");
    // A transaction that the driver does not know of keeps its lock until the connection closes.
    other.query(L"BEGIN EXCLUSIVE");
    const ServiceAnswer answer = execute(insert);
    EXPECT_EQ(answer.status, 422);
    EXPECT_EQ(answer.body["error"], kTooLong);
  }
  EXPECT_EQ(site.value(L"select count(*) from System_pc_names"), L"0");
  EXPECT_EQ(execute(insert).status, 200);
}

TEST_F(StatementTest, OneWhoseResultIsRefusedChangesNothing) {
  startService({"--response-bytes", "1024"});
  addWorkstation(L"A", L"1");
  const std::string change = "UPDATE System_pc_names SET flag2 = flag2 + 1\r\n\r\n";
  EXPECT_EQ(query(change + "SELECT hex(zeroblob(10000))").status, 422);
  EXPECT_EQ(site.value(L"select flag2 from System_pc_names"), L"1");
  EXPECT_EQ(query(change + "SELECT 1").status, 200);
  EXPECT_EQ(site.value(L"select flag2 from System_pc_names"), L"2");
}

TEST_F(StatementTest, ACrashingDriverAffectsNothingElse) {
  startService({});
  const RawClient client(service.port());
  // A sanitizer reports SIGSEGV as a finding of its own.
  kill(beginEndless(client), SIGABRT);
  EXPECT_NE(client.readToEnd().find("The database driver broke down."), std::string::npos);
  EXPECT_EQ(query("select 1").status, 200);
}

TEST_F(StatementTest, TheServiceEndsCleanlyAlthoughOneIsStuck) {
  startService({"--statement-seconds", "3600"});
  const RawClient client(service.port());
  const pid_t stuck = beginEndless(client);
  EXPECT_EQ(service.end(SIGTERM), 0) << service.log();
  EXPECT_NE(client.readToEnd().find("The service is ending."), std::string::npos);
  EXPECT_EQ(kill(stuck, 0), -1);
}

TEST_F(StatementTest, OneThatIsRunningIsFinishedWhenTheServiceEnds) {
  startService({});
  const RawClient client(service.port());
  client.send(
      requestFor("WITH RECURSIVE c(x) AS (SELECT 1 UNION ALL SELECT x + 1 FROM c LIMIT 200000) "
                 "SELECT count(*) FROM c"));
  EXPECT_TRUE(eventually([this] { return !service.children().empty(); }));
  EXPECT_EQ(service.end(SIGTERM), 0) << service.log();
  EXPECT_NE(client.readToEnd().find("200000"), std::string::npos);
}

TEST_F(StatementTest, AKilledServiceLeavesNoneBehind) {
  startService({});
  const RawClient client(service.port());
  const pid_t stuck = beginEndless(client);
  EXPECT_EQ(service.end(SIGKILL), -SIGKILL);
  EXPECT_TRUE(eventually([stuck] { return !isAlive(stuck); }));
}

TEST_F(StatementTest, AResultWithoutEndIsRefusedWhileItIsFetched) {
  // The driver passes the rows on as they come.
  service.databases = {"Talora = DSN=TlTestSite;StepAPI=1;"};
  startService({"--response-bytes", "1000000", "--statement-seconds", "3600"});
  const ServiceAnswer answer = query(kEndlessRows);
  EXPECT_EQ(answer.status, 422);
  EXPECT_EQ(answer.body["error"], "The result is larger than the service allows.");
  EXPECT_EQ(query("select 1").status, 200);
}

TEST_F(StatementTest, OneCellBeyondTheLimitIsRefused) {
  startService({"--response-bytes", "100000"});
  const ServiceAnswer answer = query("SELECT hex(zeroblob(100000))");
  EXPECT_EQ(answer.status, 422);
  EXPECT_EQ(answer.body["error"], "The result is larger than the service allows.");
  EXPECT_EQ(query("SELECT hex(zeroblob(40000))").status, 200);
}

TEST_F(StatementTest, OtherClientsConnectionsAreNotKeptOpenByIt) {
  startService({"--request-seconds", "1"});
  const RawClient idle(service.port());
  const RawClient stuck(service.port());
  beginEndless(stuck);
  // The service disconnects the first client while the statement runs on.
  EXPECT_EQ(idle.readToEnd(), "");
  EXPECT_FALSE(service.children().empty());
}

}  // namespace
}  // namespace tlpacscfg::test
