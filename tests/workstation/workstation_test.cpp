#include "workstation/workstation.h"

#include "data/direct_connections.h"
#include "data/mod_main.h"
#include "data/workstation_key.h"
#include "harness/core_fixture.h"
#include "harness/errors.h"
#include "harness/fake_client.h"
#include "log/log_support.h"
#include "odbc/error.h"
#include "support/text.h"

namespace tlpacscfg::test {
namespace {

class WorkstationsTest : public SiteTest {
 protected:
  void add(int count) {
    for (int i = 1; i <= count; ++i) {
      workstations.AddWS(static_cast<std::int16_t>(i), L"PC" + std::to_wstring(i));
    }
  }

  /// The number of logged commands without the mark for offline copies.
  int batches() const {
    const std::string begin = "[TLPACSCFG] Query:\r\nDELETE FROM";
    int found = 0;
    const std::string text = log();
    for (std::size_t at = text.find(begin); at != text.npos; at = text.find(begin, at + 1)) {
      ++found;
    }
    return found;
  }

  std::wstring count(const std::wstring& table) const {
    return *site.value(L"SELECT count(*) FROM " + table);
  }

  static std::wstring statements(const std::wstring& name, const std::wstring& configID) {
    return L"DELETE FROM system_workstation_cfg\r\n"
           L"WHERE pc_name = '" +
           name +
           L"' and \r\n"
           L"application_id = 38 and \r\n"
           L"key_name = 'PACSConfig'\r\n\r\n"
           L"INSERT into system_workstation_cfg\r\n"
           L"(pc_name, application_id, key_name, key_value, user_id, flag1)\r\n"
           L"VALUES('" +
           name + L"', 38, 'PACSConfig', '" + configID + L"', -1, 0)\r\n\r\n";
  }

  colWorkstation workstations;
};

TEST_F(WorkstationsTest, ANewWorkstationIsEmpty) {
  const clsWorkstation workstation;
  EXPECT_EQ(workstation.configID, 0);
  EXPECT_EQ(workstation.WorkStation, L"");
  EXPECT_EQ(workstation.Flag2, 0);
}

TEST_F(WorkstationsTest, ANewCollectionIsEmpty) {
  EXPECT_EQ(workstations.ColWorkStations->count(), 0U);
  EXPECT_EQ(workstations.GetItemNumber(L"PC1"), 0);
  EXPECT_FALSE(workstations.CheckforAttachedWS(0));
  EXPECT_EQ(workstations.Item(1), nullptr);
}

TEST_F(WorkstationsTest, AnAddedWorkstationHasItsConfigurationAndNoFlag) {
  workstations.AddWS(7, L"PC1");
  const auto workstation = workstations.Item(1);
  ASSERT_NE(workstation, nullptr);
  EXPECT_EQ(workstation->configID, 7);
  EXPECT_EQ(workstation->WorkStation, L"PC1");
  EXPECT_EQ(workstation->Flag2, 0);
  EXPECT_EQ(workstations.ColWorkStations->find(L"pc1"), workstation);
}

TEST_F(WorkstationsTest, TwoNamesThatDifferInCaseOnlyCannotBothBeHeld) {
  workstations.AddWS(1, L"PC1");
  EXPECT_RUNTIME_ERROR(workstations.AddWS(2, L"pc1"), 457,
                       L"This key is already associated with an element of this collection");
  EXPECT_EQ(workstations.ColWorkStations->count(), 1U);
}

TEST_F(WorkstationsTest, ItemIsNullOutsideTheCollection) {
  add(3);
  EXPECT_EQ(workstations.Item(2)->WorkStation, L"PC2");
  for (const std::int64_t position : {-1, 0, 4, 70000}) {
    EXPECT_EQ(workstations.Item(position), nullptr);
  }
}

TEST_F(WorkstationsTest, ANameIsFoundOnlyInItsOwnCase) {
  add(3);
  EXPECT_EQ(workstations.GetItemNumber(L"PC3"), 3);
  EXPECT_EQ(workstations.GetItemNumber(L"pc3"), 0);
  EXPECT_EQ(workstations.GetItemNumber(L"PC3 "), 0);
}

TEST_F(WorkstationsTest, ItemNumbersHave16Bits) {
  add(32767);
  EXPECT_EQ(workstations.GetItemNumber(L"PC32767"), 32767);
  workstations.AddWS(1, L"LAST");
  EXPECT_OVERFLOW(workstations.GetItemNumber(L"LAST"));
}

TEST_F(WorkstationsTest, AConfigurationInUseIsDetected) {
  add(3);
  EXPECT_TRUE(workstations.CheckforAttachedWS(1));
  EXPECT_TRUE(workstations.CheckforAttachedWS(3));
  EXPECT_FALSE(workstations.CheckforAttachedWS(4));
  EXPECT_FALSE(workstations.CheckforAttachedWS(0));
}

TEST_F(WorkstationsTest, SavingOneWorkstationQueuesItsStatement) {
  connect();
  clsWorkstation workstation;
  workstation.WorkStation = L"PC1";
  workstation.configID = 7;
  workstation.SaveWorkstation();
  EXPECT_EQ(modMain.g_strWorkstationBatch,
            L"\r\n\r\nINSERT into system_workstation_cfg\r\n"
            L"(pc_name, application_id, key_name, key_value, user_id, flag1)\r\n"
            L"VALUES('PC1', 38, 'PACSConfig', '7', -1, 0)");
  EXPECT_EQ(count(L"System_workstation_cfg"), L"0");
}

TEST_F(WorkstationsTest, SavingAllRewritesEveryAssignmentInOneCommand) {
  connect();
  logOn();
  workstations.AddWS(7, L"PC1");
  workstations.AddWS(0, L"PC2");
  assign(L"PC1", L"'3'");
  assign(L"PC3", L"'4'");
  site.run(L"INSERT INTO System_workstation_cfg VALUES('PC1', 38, 'Other', 'x', 5, 6)");
  site.run(L"INSERT INTO System_workstation_cfg VALUES('PC1', 39, 'PACSConfig', 'y', 5, 6)");
  modMain.g_strWorkstationBatch = L"dropped";
  workstations.SaveAllWorkStationSettings();
  EXPECT_EQ(modMain.g_strWorkstationBatch, L"");
  EXPECT_EQ(log(), debugLine(9, L"[TLPACSCFG] Executing query") +
                       debugLine(10, L"[TLPACSCFG] Query:\r\n" + statements(L"PC1", L"7") +
                                         statements(L"PC2", L"0")) +
                       debugLine(9, L"[TLPACSCFG] Executing query") +
                       debugLine(10, L"[TLPACSCFG] Query:\r\n" + kMark));
  EXPECT_EQ(site.rows(L"SELECT * FROM System_workstation_cfg ORDER BY pc_name, application_id, "
                      L"key_name"),
            (ProbeRows{{L"PC1", L"38", L"Other", L"x", L"5", L"6"},
                       {L"PC1", L"38", L"PACSConfig", L"7", L"-1", L"0"},
                       {L"PC1", L"39", L"PACSConfig", L"y", L"5", L"6"},
                       {L"PC2", L"38", L"PACSConfig", L"0", L"-1", L"0"},
                       {L"PC3", L"38", L"PACSConfig", L"4", L"-1", L"0"}}));
}

TEST_F(WorkstationsTest, AHundredWorkstationsMakeABatch) {
  const std::pair<int, int> expectations[] = {{0, 0},   {1, 1},   {99, 1}, {100, 1},
                                              {101, 2}, {200, 2}, {201, 3}};
  for (const auto& [size, commands] : expectations) {
    workstations = colWorkstation();
    add(size);
    site.runAll({L"DELETE FROM System_workstation_cfg", L"DELETE FROM System_offline_db_updates"});
    modMain.g_blnSqlConnected = false;
    connect();
    logOn();
    const int before = batches();
    workstations.SaveAllWorkStationSettings();
    EXPECT_EQ(batches() - before, commands) << size;
    EXPECT_EQ(count(L"System_workstation_cfg"), std::to_wstring(size));
    EXPECT_EQ(count(L"System_offline_db_updates"), L"1") << size;
  }
}

TEST_F(WorkstationsTest, AFailedBatchLosesNoAssignment) {
  connect();
  add(99);
  workstations.AddWS(3, L"O'BRIEN-PC");
  for (const wchar_t* name : {L"PC1", L"PC50", L"PC99"}) assign(name, L"'77'");
  EXPECT_THROW(workstations.SaveAllWorkStationSettings(), odbc::Error);
  EXPECT_EQ(site.rows(L"SELECT pc_name, key_value FROM System_workstation_cfg"),
            (ProbeRows{{L"PC1", L"77"}, {L"PC50", L"77"}, {L"PC99", L"77"}}));
  EXPECT_EQ(count(L"System_offline_db_updates"), L"0");
}

TEST_F(WorkstationsTest, BatchesBeforeAFailedOneStaySaved) {
  connect();
  add(100);
  workstations.AddWS(3, L"O'BRIEN-PC");
  EXPECT_THROW(workstations.SaveAllWorkStationSettings(), odbc::Error);
  EXPECT_EQ(count(L"System_workstation_cfg"), L"100");
  EXPECT_EQ(count(L"System_offline_db_updates"), L"0");
}

TEST_F(WorkstationsTest, AfterAFailedBatchEachStatementCommitsItselfAgain) {
  connect();
  workstations.AddWS(3, L"O'BRIEN-PC");
  EXPECT_THROW(workstations.SaveAllWorkStationSettings(), odbc::Error);
  modMain.g_conSql->query(L"INSERT INTO System_pc_names VALUES('NEW', '', 1)");
  EXPECT_EQ(count(L"System_pc_names"), L"1") << "seen from another connection";
}

TEST_F(WorkstationsTest, StandAloneModeSavesNothing) {
  add(1);
  modMain.g_blnUseOfflineDB = true;
  modMain.g_blnOfflineConnected = true;
  modMain.g_strWorkstationBatch = L"dropped";
  logOn();
  workstations.SaveAllWorkStationSettings();
  EXPECT_EQ(modMain.g_strWorkstationBatch, L"");
  EXPECT_EQ(log(), "");
}

TEST_F(WorkstationsTest, TheRemoteClientIsSentTheSameBatches) {
  const auto client = connectFakeClient(L"talora");
  add(101);
  std::wstring first;
  for (int i = 1; i <= 100; ++i) {
    first += statements(L"PC" + std::to_wstring(i), std::to_wstring(i));
  }
  workstations.SaveAllWorkStationSettings();
  EXPECT_EQ(client->calls, (std::vector<std::wstring>{
                               L"SQLExecuteText(talora, " + first + L")",
                               L"SQLExecuteText(talora, " + statements(L"PC101", L"101") + L")",
                               L"SQLExecuteText(talora, " + kMark + L")"}));
}

TEST_F(WorkstationsTest, AllWorkstationsOf16BitsAreSaved) {
  connect();
  add(32767);
  workstations.SaveAllWorkStationSettings();
  EXPECT_EQ(count(L"System_workstation_cfg"), L"32767");
}

}  // namespace
}  // namespace tlpacscfg::test
