#include <sys/resource.h>
#include <sys/select.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <regex>

#include "remote/service/service_fixture.h"

namespace tlpacscfg::test {
namespace {

class DescriptorsTest : public ServiceTest {
 protected:
  /// What the system allows the service.
  void limitFiles(rlim_t count) {
    service.beforeStart = [limit = rlimit{count, count}] { setrlimit(RLIMIT_NOFILE, &limit); };
  }

  /// So many silent connections, ten from each address.
  void hold(int count) {
    for (int i = 0; i < count; ++i) {
      const std::string source =
          "127.0." + std::to_string(1 + i / 10 / 250) + "." + std::to_string(2 + i / 10 % 250);
      held.push_back(std::make_unique<RawClient>(service.port(), source.c_str()));
    }
  }

  std::vector<std::unique_ptr<RawClient>> held;
};

TEST_F(DescriptorsTest, AConnectionWithALargeNumberIsServed) {
  ASSERT_TRUE(
      service.start({"--waiting", "3000", "--header-seconds", "3600", "--request-seconds", "3600"}))
      << service.log();
  hold(FD_SETSIZE + 100);
  EXPECT_EQ(query("select 1").status, 200);
  EXPECT_FALSE(service.logHolds("event=dropped")) << service.log();
}

TEST_F(DescriptorsTest, NoMoreConnectionsWaitThanTheLimitOfOpenFilesAllows) {
  limitFiles(100);
  ASSERT_TRUE(service.start()) << service.log();
  EXPECT_TRUE(service.logHolds("event=limited waiting=28 ")) << service.log();
  hold(200);
  EXPECT_EQ(query("select 1").status, 200);
  EXPECT_TRUE(eventually([this] { return service.logHolds("reason=\"too many connections\""); }));
  EXPECT_FALSE(service.logHolds("no descriptor"));
}

TEST_F(DescriptorsTest, ALimitThatLeavesNoPlaceIsReported) {
  service.writeConfiguration();
  limitFiles(72);
  EXPECT_EQ(service.runToEnd({"--config", service.configurationFile(), "--plain-http", "yes"}), 1);
  EXPECT_TRUE(service.logHolds("the limit of open files, 72, is too low for 8 workers"));
}

/// Whether every thread of the process waits for something.
bool sleeps(pid_t process) {
  const std::filesystem::directory_iterator threads("/proc/" + std::to_string(process) + "/task");
  return std::all_of(begin(threads), end(threads), [](const auto& thread) {
    std::ifstream stat(thread.path() / "stat");
    std::string id, name, state;
    stat >> id >> name >> state;
    return state == "S";
  });
}

TEST_F(DescriptorsTest, WithoutAFreeOneTheServiceTriesAgainNowAndThen) {
  ASSERT_TRUE(service.start()) << service.log();
  // In a sanitizer build a thread that begins needs descriptors.
  ASSERT_TRUE(eventually([this] { return sleeps(service.pid()); }));
  rlimit normal{};
  ASSERT_EQ(prlimit(service.pid(), RLIMIT_NOFILE, nullptr, &normal), 0);
  const rlimit none{3, normal.rlim_max};
  ASSERT_EQ(prlimit(service.pid(), RLIMIT_NOFILE, &none, nullptr), 0);
  const RawClient client(service.port());
  client.send(properRequest("/v1/connect", "{}"));

  // It tries ten times a second.
  const std::regex report("reason=\"no descriptor or memory is free\" connections=([0-9]+)\n");
  std::string log;
  ASSERT_TRUE(eventually([&] {
    log = service.log();
    return std::distance(std::sregex_iterator(log.begin(), log.end(), report), {}) > 1;
  })) << log;
  for (std::sregex_iterator one(log.begin(), log.end(), report); one != std::sregex_iterator();
       ++one) {
    EXPECT_LE(std::stoi((*one)[1]), 11);
  }

  ASSERT_EQ(prlimit(service.pid(), RLIMIT_NOFILE, &normal, nullptr), 0);
  EXPECT_TRUE(client.readToEnd().starts_with("HTTP/1.1 400 "));
  expectStillServing();
}

}  // namespace
}  // namespace tlpacscfg::test
