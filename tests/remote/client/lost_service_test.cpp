#include <chrono>
#include <functional>
#include <tuple>

#include "data/mod_main.h"
#include "data/tl_comm_client.h"
#include "host/host_object.h"
#include "remote/client/client_fixture.h"
#include "remote/harness/scripted_service.h"
#include "support/text.h"
#include "workstation/assignments.h"

/// The service stops answering in the middle of a command of many requests.
namespace tlpacscfg::test {
namespace {

using Clock = std::chrono::steady_clock;

const Reply kNoRows = {Treatment::Answer, R"({"tables": [{"columns": 4, "rows": []}]})"};
const Reply kDone = {Treatment::Answer, R"({"done": true})"};
const Reply kSilence = {Treatment::Silence};

class LostServiceTest : public ServiceClientTest {
 protected:
  static constexpr int kTimeout = 2;
  /// 30 batches.
  static constexpr int kWorkstations = 3000;

  LostServiceTest() {
    for (int i = 0; i < kWorkstations; ++i) workstations.AddWS(1, L"READ-" + decimal(i));
  }

  void connectTo(const ScriptedService& lost) {
    useService(lost.port(), decimal(kTimeout));
    modMain.g_blnTlCommClientEnabled = true;
    ASSERT_TRUE(ConnectTlCommClient(config));
  }

  static void expectOneTimeOut(const std::function<void()>& command) {
    const auto start = Clock::now();
    command();
    EXPECT_GE(Clock::now() - start, std::chrono::seconds(kTimeout));
    EXPECT_LT(Clock::now() - start, std::chrono::seconds(2 * kTimeout));
  }

  colWorkstation workstations;
};

TEST_F(LostServiceTest, AHostThatSavesAllWorkstationsLosesOneTimeOut) {
  const ScriptedService lost({kConnects, kDone, kDone, kSilence});
  connectTo(lost);
  expectOneTimeOut([&] { workstations.SaveAllWorkStationSettings(); });
  EXPECT_EQ(lost.connections(), 4);
}

TEST_F(LostServiceTest, ClosingTheListEndsInOneErrorAfterOneTimeOut) {
  const ScriptedService lost({kConnects, kNoRows, kDone, kDone, kSilence});
  connectTo(lost);
  expectOneTimeOut([&] {
    try {
      std::ignore = saveAssignments(workstations, {}, [](std::size_t, std::size_t) {});
      ADD_FAILURE() << "saved";
    } catch (const RunTimeError& error) {
      EXPECT_EQ(error.description(), L"The service did not answer in time.");
    }
  });
  EXPECT_EQ(lost.connections(), 5);
}

TEST_F(LostServiceTest, LoadingASiteLosesOneTimeOut) {
  const ScriptedService lost({kConnects, kSilence});
  useService(lost.port(), decimal(kTimeout));
  modMain.g_blnTlCommClientEnabled = true;
  clsConfig host;
  *host.settings = config;
  expectOneTimeOut([&] { host.Init(); });
  EXPECT_TRUE(TlCommClientConnected());
  EXPECT_EQ(lost.connections(), 2);
}

}  // namespace
}  // namespace tlpacscfg::test
