#include "harness/core_fixture.h"

#include <clocale>
#include <ostream>

#include "data/direct_connections.h"
#include "data/mod_main.h"
#include "data/tl_comm_client.h"
#include "harness/machine.h"
#include "harness/scratch.h"
#include "log/log_support.h"
#include "support/list_view_sort.h"
#include "support/registry.h"
#include "support/text.h"

namespace tlpacscfg::test {
namespace {

void resetModules() {
  modMain = {};
  modTlCommClient = {};
  modLogSupport = {};
  modListView = {};
}

struct System {
  decltype(system::localTime) localTime = system::localTime;
  decltype(system::computerName) computerName = system::computerName;
  decltype(system::showMessage) showMessage = system::showMessage;
  decltype(system::processPendingMessages) processPendingMessages = system::processPendingMessages;
  decltype(createTlCommClient) createClient = createTlCommClient;
};

const System& originalSystem() {
  static const System system;
  return system;
}

}  // namespace

CoreTest::CoreTest() {
  // The driver manager uses the locale to convert texts for drivers without Unicode functions.
  std::setlocale(LC_CTYPE, "");
  originalSystem();
  resetModules();
  freshScratch();
  system::localTime = [] { return system::LocalTime{2026, 1, 5, 9, 8, 7, 65}; };
  system::computerName = [] { return std::wstring(kComputer); };
  system::processPendingMessages = [] {};
  system::showMessage = [this](const system::Message& message) {
    messages.push_back(message);
    if (answers.empty()) {
      return message.buttons == system::Buttons::Ok ? system::Answer::Ok : system::Answer::No;
    }
    const system::Answer answer = answers.front();
    answers.pop_front();
    return answer;
  };
}

CoreTest::~CoreTest() {
  resetModules();
  const System& original = originalSystem();
  system::localTime = original.localTime;
  system::computerName = original.computerName;
  system::showMessage = original.showMessage;
  system::processPendingMessages = original.processPendingMessages;
  createTlCommClient = original.createClient;
}

void CoreTest::expectPlainBox(const std::wstring& text) const {
  ASSERT_EQ(messages.size(), 1U);
  EXPECT_EQ(messages[0].text, text);
  EXPECT_EQ(messages[0].buttons, system::Buttons::Ok);
  EXPECT_EQ(messages[0].icon, system::Icon::None);
  EXPECT_EQ(messages[0].modality, system::Modality::System);
  EXPECT_EQ(messages[0].title, L"TLPACSCFG");
}

void CoreTest::logTo(const std::wstring& file, std::int16_t depth) {
  modLogSupport.g_strLogFile = file;
  modLogSupport.g_intDebugMode = depth;
}

void CoreTest::logOn(std::int16_t depth) { logTo(scratchPath(L"component.log"), depth); }

std::string CoreTest::log() const {
  const std::wstring file = scratchPath(L"component.log");
  return fileExists(file) ? readBytes(file) : std::string();
}

std::string CoreTest::debugLine(int depth, const std::wstring& message) {
  return toUtf8(std::wstring(kNow) + L" DEBUG" + std::to_wstring(depth) + L"  " + message +
                L"\r\n");
}

std::string CoreTest::errorBlock(const std::wstring& message) {
  return std::string(79, 'v') + "\r\n" + toUtf8(std::wstring(kNow) + L" ERROR   " + message) +
         "\r\n" + std::string(79, '^') + "\r\n";
}

SiteTest::SiteTest() {
  needDriver(sqliteDriver());
  // The data source expects the database beside the test's directory.
  std::vector<std::wstring> statements;
  for (const std::vector<std::optional<std::wstring>>& row :
       site.rows(L"SELECT name FROM sqlite_master WHERE type = 'table'")) {
    statements.push_back(L"DROP TABLE " + *row[0]);
  }
  for (std::wstring& statement : statementsOfScript(sourcePath("demo/schema.sqlite.sql"))) {
    statements.push_back(std::move(statement));
  }
  site.runAll(statements);
  registerDataSource(L"TlTestSite", siteFile());
  config.SQLDSN = L"TlTestSite";
  config.User_ID = 4711;
}

void SiteTest::connect() { ASSERT_TRUE(ConnectToDatabase(config)); }

void SiteTest::connectSilently() {
  const std::wstring file = std::exchange(modLogSupport.g_strLogFile, std::wstring());
  connect();
  modLogSupport.g_strLogFile = file;
}

void SiteTest::addWorkstation(const std::wstring& name, const std::wstring& flag2) {
  site.run(L"INSERT INTO System_pc_names VALUES('" + name + L"', '', " + flag2 + L")");
}

void SiteTest::assign(const std::wstring& name, const std::wstring& quotedValue) {
  site.run(L"INSERT INTO System_workstation_cfg VALUES('" + name + L"', 38, 'PACSConfig', " +
           quotedValue + L", -1, 0)");
}

void SiteTest::addConfiguration(int id, const std::wstring& changes) {
  std::vector<std::wstring> statements = {
      L"INSERT INTO Interface_PACS_cfg VALUES(" + std::to_wstring(id) +
      L", 0, '', '', '', 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, '2012-10-24 14:05:09', '', '', 0, 0, 0, 0, "
      L"0, 0, 0, 0, 0, 0, '', '', 0, 0, 0, 0, 0, '', 0, 0)"};
  if (!changes.empty()) {
    statements.push_back(L"UPDATE Interface_PACS_cfg SET " + changes + L" WHERE config_id = " +
                         std::to_wstring(id));
  }
  site.runAll(statements);
}

void registerDataSource(const std::wstring& name, const std::wstring& database) {
  const std::wstring key = L"SOFTWARE\\ODBC\\ODBC.INI\\" + name;
  ASSERT_TRUE(registry::createKey(registry::Root::CurrentUser, key));
  ASSERT_TRUE(registry::write(registry::Root::CurrentUser, key, L"DATABASE", database));
}

std::vector<std::wstring> statementsOfScript(const std::wstring& path) {
  std::wstring text;
  const std::wstring script = fromUtf8(readBytes(path));
  for (const std::wstring_view line : split(script, L'\n')) {
    if (!line.starts_with(L"--")) text.append(line).append(L"\n");
  }
  std::vector<std::wstring> statements;
  for (const std::wstring_view statement : split(text, L';')) {
    if (statement.find_first_not_of(L"\r\n ") != statement.npos) statements.emplace_back(statement);
  }
  return statements;
}

}  // namespace tlpacscfg::test

namespace tlpacscfg::system {

void PrintTo(const Message& message, std::ostream* stream) {
  *stream << toUtf8(message.title) << ": " << toUtf8(message.text);
}

}  // namespace tlpacscfg::system
