#include "data/direct_connections.h"
#include "data/mod_main.h"
#include "harness/core_fixture.h"
#include "harness/fake_client.h"
#include "harness/scratch.h"
#include "log/log_support.h"
#include "workstation/workstation.h"

namespace tlpacscfg::test {
namespace {

constexpr const wchar_t* kStatement =
    L"select p.pc_name,key_value = (select key_value from system_workstation_cfg where key_name = "
    L"'PACSConfig' and pc_name = p.pc_name), access_string, p.flag2 from system_pc_names p";
constexpr const wchar_t* kErrorPrefix = L"Error 457 Error Desc ";

struct Loaded {
  std::int16_t configID;
  std::wstring name;
  std::int16_t flag2;

  bool operator==(const Loaded&) const = default;
};

void PrintTo(const Loaded& workstation, std::ostream* stream) {
  *stream << std::string(workstation.name.begin(), workstation.name.end()) << ": "
          << workstation.configID << ", " << workstation.flag2;
}

class WorkstationLoadingTest : public SiteTest {
 protected:
  std::vector<Loaded> loaded() const {
    std::vector<Loaded> found;
    for (const auto& item : workstations.ColWorkStations->items()) {
      found.push_back({item->configID, item->WorkStation, item->Flag2});
    }
    return found;
  }

  colWorkstation workstations;
};

TEST_F(WorkstationLoadingTest, EveryWorkstationComesWithItsConfigurationAndFlag) {
  addWorkstation(L"PC2", L"0");
  addWorkstation(L"PC1", L"1");
  addWorkstation(L"PC3", L"-5");
  assign(L"PC1", L"'7'");
  assign(L"pc3", L"'12'");
  site.run(L"INSERT INTO System_workstation_cfg VALUES('PC2', 38, 'OtherKey', '9', -1, 0)");
  connect();
  workstations.GetWorkstationsList();
  EXPECT_EQ(loaded(), (std::vector<Loaded>{{0, L"PC2", 0}, {7, L"PC1", 1}, {12, L"PC3", -5}}));
  EXPECT_TRUE(messages.empty());
  EXPECT_EQ(workstations.ColWorkStations->find(L"pc1")->configID, 7);
}

TEST_F(WorkstationLoadingTest, NullAndZeroAreNoConfiguration) {
  addWorkstation(L"A");
  addWorkstation(L"B");
  assign(L"A", L"NULL");
  assign(L"B", L"'0'");
  connect();
  workstations.GetWorkstationsList();
  EXPECT_EQ(loaded(), (std::vector<Loaded>{{0, L"A", 1}, {0, L"B", 1}}));
}

TEST_F(WorkstationLoadingTest, BlanksAroundANameAreRemoved) {
  addWorkstation(L"  A B  ");
  connect();
  workstations.GetWorkstationsList();
  EXPECT_EQ(loaded(), (std::vector<Loaded>{{0, L"A B", 1}}));
}

TEST_F(WorkstationLoadingTest, ACellThatDoesNotConvertIsAnErrorAndTheRowsBeforeStay) {
  const struct {
    const wchar_t* configuration;
    const wchar_t* flag2;
    const wchar_t* error;
  } cases[] = {{L"''", L"1", L"Error 13 Error Desc Type mismatch"},
               {L"'none'", L"1", L"Error 13 Error Desc Type mismatch"},
               {L"'32768'", L"1", L"Error 6 Error Desc Overflow"},
               {L"'1'", L"32768", L"Error 6 Error Desc Overflow"},
               {L"'1'", L"NULL", L"Error 94 Error Desc Invalid use of Null"}};
  connect();
  addWorkstation(L"A");
  for (const auto& [configuration, flag2, error] : cases) {
    addWorkstation(L"B", flag2);
    addWorkstation(L"C");
    assign(L"B", configuration);
    workstations = colWorkstation();
    messages.clear();
    workstations.GetWorkstationsList();
    EXPECT_EQ(loaded(), (std::vector<Loaded>{{0, L"A", 1}}));
    expectPlainBox(error);
    site.runAll({L"DELETE FROM System_pc_names WHERE pc_name <> 'A'",
                 L"DELETE FROM System_workstation_cfg"});
  }
}

TEST_F(WorkstationLoadingTest, ADuplicateNameIsAnErrorAndTheRowsBeforeStay) {
  addWorkstation(L"PC1");
  addWorkstation(L" PC1");
  addWorkstation(L"PC2");
  connect();
  workstations.GetWorkstationsList();
  EXPECT_EQ(loaded(), (std::vector<Loaded>{{0, L"PC1", 1}}));
  expectPlainBox(std::wstring(kErrorPrefix) +
                 L"This key is already associated with an element of this collection");
}

TEST_F(WorkstationLoadingTest, ASecondLoadCollides) {
  addWorkstation(L"PC1");
  connect();
  workstations.GetWorkstationsList();
  workstations.GetWorkstationsList();
  EXPECT_EQ(loaded().size(), 1U);
  ASSERT_EQ(messages.size(), 1U);
  EXPECT_TRUE(messages[0].text.starts_with(kErrorPrefix));
}

TEST_F(WorkstationLoadingTest, AMissingTableIsShown) {
  site.run(L"DROP TABLE System_pc_names");
  connect();
  workstations.GetWorkstationsList();
  ASSERT_EQ(messages.size(), 1U);
  EXPECT_TRUE(messages[0].text.starts_with(L"Error 40002 Error Desc ")) << messages[0].text;
  EXPECT_NE(messages[0].text.find(L"system_pc_names"), std::wstring::npos) << messages[0].text;
}

TEST_F(WorkstationLoadingTest, WithoutAConnectionThereIsNoResultSetToRead) {
  workstations.GetWorkstationsList();
  expectPlainBox(L"Error 91 Error Desc Object variable or With block variable not set");
}

TEST_F(WorkstationLoadingTest, WithoutAConnectionTheHeldResultSetIsReadAsItStands) {
  Table held(4);
  for (const wchar_t* cell : {L"HELD", L"5", L"", L"1"}) held.append(cell);
  modMain.g_rsQuery = std::make_unique<ResultSet>(held);
  workstations.GetWorkstationsList();
  EXPECT_EQ(loaded(), (std::vector<Loaded>{{5, L"HELD", 1}}));
}

TEST_F(WorkstationLoadingTest, TheDirectPathWritesNothingToTheLog) {
  connect();
  logOn();
  workstations.GetWorkstationsList();
  EXPECT_EQ(log(), "");
}

TEST_F(WorkstationLoadingTest, AllWorkstationsOf16BitsAreLoaded) {
  site.runAll(
      {L"WITH RECURSIVE ids(id) AS (SELECT 1 UNION ALL SELECT id + 1 FROM ids WHERE id < 32767) "
       L"INSERT INTO System_pc_names SELECT 'PC' || id, 'access', 1 FROM ids",
       L"INSERT INTO System_workstation_cfg SELECT pc_name, 38, 'PACSConfig', '12', -1, 0 FROM "
       L"System_pc_names"});
  connect();
  workstations.GetWorkstationsList();
  EXPECT_TRUE(messages.empty());
  ASSERT_EQ(workstations.ColWorkStations->count(), 32767U);
  EXPECT_EQ(workstations.Item(32767)->configID, 12);
}

class RemoteWorkstationLoadingTest : public WorkstationLoadingTest {
 protected:
  std::shared_ptr<ClientScript> client = connectFakeClient(L"talora");
};

TEST_F(RemoteWorkstationLoadingTest, TheClientIsSentTheSameStatement) {
  logOn();
  client->table = tableOf({{L" PC1 ", L"7", L"", L"1"}, {L"PC2", L"0", std::nullopt, L"0"}});
  workstations.GetWorkstationsList();
  EXPECT_EQ(loaded(), (std::vector<Loaded>{{7, L"PC1", 1}, {0, L"PC2", 0}}));
  EXPECT_EQ(client->calls.front(), std::wstring(L"SQLQueryTable(talora, ") + kStatement + L")");
  EXPECT_EQ(log(), debugLine(9, L"[TLPACSCFG] Retrieving workstation list using TlCommClient") +
                       debugLine(9, L"[TLPACSCFG] Querying DB using TlCommClient") +
                       debugLine(10, std::wstring(L"[TLPACSCFG] Query:\r\n") + kStatement) +
                       debugLine(9, L"[TLPACSCFG] Getting dataset from TlCommClient") +
                       debugLine(10, L"[TLPACSCFG] DataIndex:1"));
}

TEST_F(RemoteWorkstationLoadingTest, AConfigurationThatIsNotANumberCountsAsNone) {
  client->table = tableOf({{L"A", std::nullopt, L"", L"1"},
                           {L"B", L"", L"", L"1"},
                           {L"C", L"x", L"", L"1"},
                           {L"D", L"0", L"", L"1"}});
  workstations.GetWorkstationsList();
  EXPECT_EQ(loaded(),
            (std::vector<Loaded>{{0, L"A", 1}, {0, L"B", 1}, {0, L"C", 1}, {0, L"D", 1}}));
  EXPECT_TRUE(messages.empty());
}

TEST_F(RemoteWorkstationLoadingTest, AnEmptyAnswerAddsNothing) {
  workstations.GetWorkstationsList();
  EXPECT_TRUE(loaded().empty());
  EXPECT_TRUE(messages.empty());
}

TEST_F(RemoteWorkstationLoadingTest, AFailedRequestIsShownAndTheResultIsStillFetched) {
  client->tableCount = 2;
  client->table = tableOf({{L"PC1", L"7", L"", L"1"}});
  workstations.GetWorkstationsList();
  expectPlainBox(L"The workstation list request failed.");
  EXPECT_EQ(loaded(), (std::vector<Loaded>{{7, L"PC1", 1}}));
}

TEST_F(RemoteWorkstationLoadingTest, AFailedFetchIsShownInAnOrdinaryBox) {
  client->failing = {L"GetTableData"};
  workstations.GetWorkstationsList();
  ASSERT_EQ(messages.size(), 1U);
  EXPECT_EQ(messages[0].text, L"Unable to get the workstation list information.");
  EXPECT_EQ(messages[0].buttons, system::Buttons::Ok);
  EXPECT_EQ(messages[0].icon, system::Icon::None);
  EXPECT_EQ(messages[0].modality, system::Modality::Application);
  EXPECT_TRUE(loaded().empty());
}

TEST_F(RemoteWorkstationLoadingTest, RowsReturnedDespiteAFailedFetchAreAdded) {
  client->errors = {L"", L"late"};
  client->table = tableOf({{L"PC1", L"7", L"", L"1"}});
  workstations.GetWorkstationsList();
  ASSERT_EQ(messages.size(), 1U);
  EXPECT_EQ(messages[0].text, L"Unable to get the workstation list information.");
  EXPECT_EQ(loaded(), (std::vector<Loaded>{{7, L"PC1", 1}}));
}

TEST_F(RemoteWorkstationLoadingTest, ALostServiceShowsBothBoxes) {
  client->failing = {L"SQLQueryTable", L"GetTableData"};
  workstations.GetWorkstationsList();
  ASSERT_EQ(messages.size(), 2U);
  EXPECT_EQ(messages[0].text, L"The workstation list request failed.");
  EXPECT_EQ(messages[1].text, L"Unable to get the workstation list information.");
}

TEST_F(RemoteWorkstationLoadingTest, AnyOtherErrorIsLoggedAndShownAndTheRowsBeforeStay) {
  logOn(0);
  client->table = tableOf({{L"PC1", L"7", L"", L"1"}, {L"PC2", L"7", L"", L""}});
  workstations.GetWorkstationsList();
  EXPECT_EQ(loaded(), (std::vector<Loaded>{{7, L"PC1", 1}}));
  EXPECT_EQ(log(), errorBlock(L"[TLPACSCFG] Error 13 Type mismatch"));
  expectPlainBox(L"An error was encountered getting the workstation list.");
}

TEST_F(RemoteWorkstationLoadingTest, NullNamesAndFlagsAndLargeNumbersAreErrors) {
  const std::vector<Cells> rows[] = {{{std::nullopt, L"7", L"", L"1"}},
                                     {{L"A", L"7", L"", std::nullopt}},
                                     {{L"A", L"32768", L"", L"1"}},
                                     {{L"A", L"7", L"", L"32768"}},
                                     {{L"A", L"7", L""}},
                                     {{L"A", L"7", L"", L"1"}, {L"a", L"7", L"", L"1"}}};
  for (const std::vector<Cells>& table : rows) {
    messages.clear();
    workstations = colWorkstation();
    client->table = tableOf(table);
    workstations.GetWorkstationsList();
    expectPlainBox(L"An error was encountered getting the workstation list.");
  }
}

TEST_F(RemoteWorkstationLoadingTest, AnUnwritableLogIsShownAsAnError) {
  logTo(scratchPath(L"missing/directory.log"));
  workstations.GetWorkstationsList();
  expectPlainBox(L"An error was encountered getting the workstation list.");
}

}  // namespace
}  // namespace tlpacscfg::test
