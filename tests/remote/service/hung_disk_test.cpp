#include "remote/harness/hung_disk.h"

#include <csignal>

#include "harness/scratch.h"
#include "remote/service/service_fixture.h"

namespace tlpacscfg::test {
namespace {

class HungDiskTest : public ServiceTest {
 protected:
  /// One place for a job, and little time.
  void startService() {
    service.directories.push_back("Z:\\hung = " + scratchUnixPath("hung"));
    ASSERT_TRUE(service.start(
        {"--statement-seconds", "1", "--memory-megabytes", "1024", "--total-megabytes", "2048"}))
        << service.log();
  }

  HungDisk disk{scratchUnixPath("hung")};
};

TEST_F(HungDiskTest, AListingEndsInTimeAndKeepsItsPlaceUntilTheDiskIsGone) {
  startService();
  const ServiceAnswer hung = files("Z:\\hung", "*");
  EXPECT_EQ(hung.status, 422);
  EXPECT_EQ(hung.body["error"], "The statement took longer than the service allows.");
  // Its process has been killed and is still there.
  EXPECT_EQ(service.children().size(), 1U);
  const ServiceAnswer refused = query("select 1");
  EXPECT_EQ(refused.status, 503);
  EXPECT_EQ(refused.body["error"], "The service waits for statements that cannot be ended.");
  expectStillServing();

  disk.remove();
  EXPECT_TRUE(eventually([this] { return query("select 1").status == 200; }));
  EXPECT_TRUE(service.children().empty());
}

TEST_F(HungDiskTest, TheServiceEndsCleanly) {
  startService();
  const RawClient client(service.port());
  const nlohmann::json body = {
      {"token", kToken}, {"directory", "Z:\\hung"}, {"pattern", "*"},       {"recurse", false},
      {"sorted", true},  {"ignoreCase", true},      {"directories", false}, {"fullPaths", false}};
  client.send(properRequest("/v1/files", body.dump()));
  EXPECT_TRUE(eventually([this] { return !service.children().empty(); }));
  EXPECT_EQ(service.end(SIGTERM), 0) << service.log();
}

}  // namespace
}  // namespace tlpacscfg::test
