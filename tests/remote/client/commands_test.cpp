#include <iostream>

#include "data/direct_connections.h"
#include "data/mod_main.h"
#include "faults/commands/command_site.h"
#include "remote/client/client_fixture.h"
#include "support/text.h"

/// The windows' commands through the reference client, whose service stops and restarts.
namespace tlpacscfg::test {
namespace {

class RemoteCommandTest : public SiteTest, public ::testing::WithParamInterface<Command> {
 protected:
  RemoteCommandTest() {
    client_.set(L"Token", WineService::kToken);
    client_.set(L"Transport", L"http");
    service_.start();
    useService(config, service_.port());
    modMain.g_blnTlCommClientEnabled = true;
    std::vector<std::wstring> statements = clearing();
    for (std::wstring& statement : contentFor(GetParam())) {
      statements.push_back(std::move(statement));
    }
    site.runAll(statements);
  }

  Stored stored() const {
    return storedIn([this](const std::wstring& sql) { return site.rows(sql); });
  }

  RegisteredClient client_;
  WineService service_;
};

TEST_P(RemoteCommandTest, AServiceThatIsGoneIsAnErrorAndTheSameCommandGoesWellWhenItIsBack) {
  Administrator administrator(config);
  administrator.prepare(GetParam());
  const Stored before = stored();
  const std::wstring view = administrator.view();
  const int port = service_.port();
  service_.end("KILL");
  EXPECT_EQ(toUtf8(administrator.give()), "40002: There is no connection to the service.");
  EXPECT_TRUE(administrator.takeQuestions().empty());
  EXPECT_EQ(toUtf8(stored().rows), toUtf8(before.rows));
  EXPECT_EQ(stored().marks, 0);
  EXPECT_EQ(administrator.view(), view);

  service_.start(port);
  EXPECT_EQ(toUtf8(administrator.give()), "");
  EXPECT_TRUE(administrator.takeQuestions().empty());
  EXPECT_NE(stored().rows, before.rows);
  EXPECT_EQ(stored().marks, 1);
  EXPECT_EQ(site.value(oursQuestion(GetParam())), L"1");
  std::cout << "1 cell\n";
}

INSTANTIATE_TEST_SUITE_P(Commands, RemoteCommandTest, ::testing::ValuesIn(kCommands),
                         [](const auto& row) { return inOneWord(nameOf(row.param)); });

}  // namespace
}  // namespace tlpacscfg::test
