#include "faults/commands/sqlite_command_fixture.h"

#include "data/direct_connections.h"
#include "harness/scratch.h"
#include "support/text.h"

namespace tlpacscfg::test {

std::string verbsOf(Command command) {
  std::string assignments;
  switch (command) {
    case Command::SaveNew:
      return "SELECT SELECT SELECT INSERT SELECT INSERT commit";
    case Command::SaveChanged:
      return "SELECT SELECT UPDATE SELECT INSERT commit";
    case Command::Delete:
      return "SELECT SELECT rollback SELECT SELECT SELECT DELETE SELECT INSERT commit";
    case Command::Assign:
      for (int i = 0; i < kWorkstations; ++i) assignments += "DELETE INSERT ";
      return "SELECT SELECT " + assignments + "SELECT INSERT commit";
  }
  return {};
}

std::vector<int> callsOf(Command command) {
  switch (command) {
    case Command::SaveNew:
      return {1, 2, 3, 4, 5, 6, 7};
    case Command::SaveChanged:
      return {1, 2, 3, 4, 5, 6};
    case Command::Delete:
      return {1, 2, 3, 4, 5, 6, 7, 8, 9, 10};
    case Command::Assign:
      return {1, 2, 3, 203, 502, 503, 504, 505};
  }
  return {};
}

SqliteCommandTest::SqliteCommandTest() {
  registerDataSource(L"TlImpatientSite", siteFile());
  config.SQLDSN = L"TlImpatientSite";
}

void SqliteCommandTest::fill(Command command) const {
  std::vector<std::wstring> statements = clearing();
  for (std::wstring& statement : contentFor(command)) statements.push_back(std::move(statement));
  site.runAll(statements);
}

void SqliteCommandTest::begin(Command command) {
  administrator.reset();
  DisconnectDatabase();
  fill(command);
  administrator = std::make_unique<Administrator>(config);
  administrator->prepare(command);
  before = stored();
  viewBefore = administrator->view();
}

bool SqliteCommandTest::giveWith(int call, OdbcMoment moment, const std::function<void()>& action) {
  bool met = false;
  const OdbcCalls calls([&](int number, OdbcMoment now) {
    if (number != call || now != moment) return;
    met = true;
    action();
  });
  give();
  return met;
}

std::wstring SqliteCommandTest::undisturbed(Command command) {
  begin(command);
  give();
  EXPECT_EQ(toUtf8(error), "");
  EXPECT_TRUE(administrator->takeQuestions().empty());
  return stored().rows;
}

void SqliteCommandTest::expectNothingOpen() const {
  EXPECT_NO_THROW(impatient.run(kHarmlessChange));
}

char SqliteCommandTest::letter(const std::wstring& done) const {
  expectNothingOpen();
  return letterOf({error, before, stored(), viewBefore, administrator->view()}, done);
}

void SqliteCommandTest::expectSucceedsNow(const std::wstring& done, std::size_t questions) {
  EXPECT_TRUE(administrator->takeQuestions().empty());
  give();
  EXPECT_EQ(toUtf8(error), "");
  EXPECT_EQ(administrator->takeQuestions().size(), questions);
  EXPECT_EQ(toUtf8(stored().rows), toUtf8(done));
  EXPECT_NE(administrator->view(), viewBefore);
  expectNothingOpen();
}

}  // namespace tlpacscfg::test
