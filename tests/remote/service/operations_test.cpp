#include <atomic>
#include <thread>

#include "harness/scratch.h"
#include "remote/service/service_fixture.h"
#include "support/text.h"

namespace tlpacscfg::test {
namespace {

using nlohmann::json;

class OperationsTest : public ServiceTest {
 protected:
  OperationsTest() { EXPECT_TRUE(service.start()) << service.log(); }
};

TEST_F(OperationsTest, ConnectingShowsWhoAnswers) {
  const ServiceAnswer answer = ask("connect", {{"application", "TLPACSCFG.DLL"}});
  EXPECT_EQ(answer.status, 200);
  EXPECT_EQ(answer.body, json::parse(R"({"service": "tlcommd", "version": 1})"));
}

TEST_F(OperationsTest, AQueryGivesItsRowsAsTextsAndNulls) {
  addWorkstation(L"READ-01", L"1");
  addWorkstation(L"READ-02", L"NULL");
  const ServiceAnswer answer = query("select pc_name, flag2 from System_pc_names order by pc_name");
  EXPECT_EQ(answer.status, 200);
  EXPECT_EQ(answer.body, json::parse(R"({"tables": [{"columns": 2,
      "rows": [["READ-01", "1"], ["READ-02", null]]}]})"));
}

TEST_F(OperationsTest, AQueryWithoutRowsStillGivesItsTable) {
  const ServiceAnswer answer = query("select pc_name, flag2 from System_pc_names");
  EXPECT_EQ(answer.body, json::parse(R"({"tables": [{"columns": 2, "rows": []}]})"));
}

TEST_F(OperationsTest, AStatementWithoutColumnsGivesNoTable) {
  const ServiceAnswer answer = query("INSERT INTO System_pc_names VALUES('READ-01', '', 1)");
  EXPECT_EQ(answer.status, 200);
  EXPECT_EQ(answer.body, json::parse(R"({"tables": []})"));
}

TEST_F(OperationsTest, QueriesSpeakTheComponentsSql) {
  addConfiguration(1);
  addConfiguration(7);
  EXPECT_EQ(query("SELECT TOP 1 config_id FROM Interface_PACS_cfg ORDER BY config_id DESC").body,
            json::parse(R"({"tables": [{"columns": 1, "rows": [["7"]]}]})"));
  EXPECT_EQ(query("SELECT GetDate()").body["tables"][0]["rows"].size(), 1U);
}

TEST_F(OperationsTest, ABatchOfStatementsIsExecutedAsAWhole) {
  EXPECT_EQ(execute("INSERT INTO System_pc_names VALUES('A', '', 1)\r\n\r\n"
                    "INSERT INTO System_pc_names VALUES('B', '', 1)")
                .status,
            200);
  EXPECT_EQ(site.value(L"select count(*) from System_pc_names"), L"2");
}

TEST_F(OperationsTest, ABatchThatFailsChangesNothing) {
  const ServiceAnswer answer = execute(
      "INSERT INTO System_pc_names VALUES('A', '', 1)\r\n\r\n"
      "INSERT INTO System_pc_names VALUES('A', '', 1)");
  EXPECT_EQ(answer.status, 422);
  EXPECT_NE(answer.body["error"].get<std::string>().find("UNIQUE"), std::string::npos);
  EXPECT_EQ(site.value(L"select count(*) from System_pc_names"), L"0");
}

TEST_F(OperationsTest, AnErrorOfTheDatabaseIsReported) {
  const ServiceAnswer answer = query("select a from nowhere");
  EXPECT_EQ(answer.status, 422);
  EXPECT_EQ(answer.body["error"], "HY000: [SQLite]no such table: nowhere (1)");
}

TEST_F(OperationsTest, TheNamesOfDatabasesIgnoreCase) {
  EXPECT_EQ(ask("query", {{"database", "TALORA"}, {"sql", "select 1"}}).status, 200);
}

TEST_F(OperationsTest, AnUnknownDatabaseIsReported) {
  const ServiceAnswer answer = ask("query", {{"database", "other"}, {"sql", "select 1"}});
  EXPECT_EQ(answer.status, 422);
  EXPECT_EQ(answer.body["error"], "There is no database 'other'.");
}

TEST_F(OperationsTest, TextsComeBackAsTheyWereStored) {
  const std::string texts[] = {
      "O''Brien and ''''sons''''",
      "Gr\u00fc\u00dfe \u65e5\u672c\u8a9e \u0416 \U0001F4C4",
      "line\r\nbreak\tand \\ \"quotes\"",
      std::string(10'000, 'x'),
  };
  int number = 0;
  for (const std::string& text : texts) {
    const std::string name = "PC-" + std::to_string(++number);
    ASSERT_EQ(
        execute("INSERT INTO System_pc_names VALUES('" + name + "', '" + text + "', 1)").status,
        200);
    std::string stored = text;
    for (std::size_t at = 0; (at = stored.find("''", at)) != stored.npos; ++at) stored.erase(at, 1);
    EXPECT_EQ(
        query("select access_string from System_pc_names where pc_name = '" + name + "'").body,
        json({{"tables", {{{"columns", 1}, {"rows", {{stored}}}}}}}));
    EXPECT_EQ(site.value(L"select access_string from System_pc_names where pc_name = '" +
                         fromUtf8(name) + L"'"),
              fromUtf8(stored));
  }
}

TEST_F(OperationsTest, ManyClientsAreServedAtOnce) {
  constexpr int kClients = 8;
  constexpr int kRows = 10;
  std::atomic<int> failures = 0;
  std::vector<std::thread> clients;
  for (int client = 0; client < kClients; ++client) {
    clients.emplace_back([&, client] {
      for (int row = 0; row < kRows; ++row) {
        const std::string name = std::to_string(client) + "-" + std::to_string(row);
        const auto insert = "INSERT INTO System_pc_names VALUES('" + name + "', '', 1)";
        if (execute(insert).status != 200) ++failures;
        const auto select = "select pc_name from System_pc_names where pc_name = '" + name + "'";
        if (query(select).body["tables"][0]["rows"] != json({{name}})) ++failures;
      }
    });
  }
  for (std::thread& client : clients) client.join();
  EXPECT_EQ(failures, 0);
  EXPECT_EQ(site.value(L"select count(*) from System_pc_names"), std::to_wstring(kClients * kRows));
}

TEST_F(OperationsTest, FilesAreListedByPatternWithoutRegardToCase) {
  for (const char* name : {"b.xml", "A.XML", "notes.txt", "SiteWindowCfg.xml"}) makePrompt(name);
  makeDirectory(platformPath(promptsPath("folder.xml")));
  const ServiceAnswer answer = files("Z:\\site\\TALORA\\PROMPTS", "*.XML");
  EXPECT_EQ(answer.status, 200);
  EXPECT_EQ(answer.body, json::parse(R"({"files": ["A.XML", "b.xml", "SiteWindowCfg.xml"]})"));
}

TEST_F(OperationsTest, AnEmptyDirectoryListsNothing) {
  EXPECT_EQ(files("z:/SITE/talora/prompts/", "*.XML").body, json::parse(R"({"files": []})"));
}

TEST_F(OperationsTest, DirectoriesThatAreNotSharedAreNotListed) {
  for (const char* directory :
       {"Z:\\site\\TALORA", "Z:\\site\\TALORA\\PROMPTS\\..", "Z:\\site\\TALORA\\PROMPTS\\missing",
        "Z:\\site\\TALORA\\PROMPTSX", "/etc", "", "C:"}) {
    const ServiceAnswer answer = files(directory, "*");
    EXPECT_EQ(answer.status, 422) << directory;
    EXPECT_EQ(answer.body["error"], "The directory is not shared or does not exist.");
  }
}

TEST_F(OperationsTest, ListingsOtherThanPlainNamesAreRefused) {
  for (const char* flag : {"recurse", "directories", "fullPaths"}) {
    json request = {{"directory", "Z:\\site\\TALORA\\PROMPTS"},
                    {"pattern", "*"},
                    {"recurse", false},
                    {"sorted", true},
                    {"ignoreCase", true},
                    {"directories", false},
                    {"fullPaths", false}};
    request[flag] = true;
    EXPECT_EQ(ask("files", request).status, 422) << flag;
  }
}

TEST_F(OperationsTest, TheJournalHasALineForEachRequestAndNoSecret) {
  execute("INSERT INTO System_pc_names VALUES('secretive', 'classified', 1)");
  query("select wrong from System_pc_names where pc_name = 'secretive'");
  EXPECT_TRUE(eventually([this] { return service.logHolds("operation=/v1/query status=422 "); }));
  EXPECT_TRUE(service.logHolds(
      "event=request address=127.0.0.1 operation=/v1/execute status=200 token=default read="));
  for (const char* secret : {kToken, "secretive", "classified", "INSERT", "select"}) {
    EXPECT_FALSE(service.logHolds(secret)) << secret;
  }
}

class BusyServiceTest : public ServiceTest {};

TEST_F(BusyServiceTest, TheJournalTellsHowLongARequestWaitedForAWorker) {
  ASSERT_TRUE(service.start({"--workers", "1"})) << service.log();
  const RawClient busy(service.port());
  busy.send("P");
  // Its worker waits for the rest of the request.
  std::this_thread::sleep_for(std::chrono::milliseconds(300));
  std::thread waiting([this] { expectStillServing(); });
  std::this_thread::sleep_for(std::chrono::milliseconds(700));
  busy.send("\r\n\r\n");
  waiting.join();
  EXPECT_TRUE(eventually([this] { return service.logHolds("operation=/v1/connect"); }));
  const std::string log = service.log();
  const std::size_t line = log.find("operation=/v1/connect");
  const auto field = [&](const std::string& name) {
    const std::size_t at = log.find(name, line);
    return at == log.npos ? -1 : std::stoi(log.substr(at + name.size()));
  };
  EXPECT_GE(field(" waited="), 100) << log;
  EXPECT_GE(field(" ms="), field(" waited=")) << log;
}

}  // namespace
}  // namespace tlpacscfg::test
