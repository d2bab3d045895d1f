#include <gmock/gmock.h>

#include "config/pacs_configurations.h"
#include "data/direct_connections.h"
#include "data/mod_main.h"
#include "wire/wire_fixture.h"
#include "workstation/workstation.h"

namespace tlpacscfg::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr const wchar_t* kOfflineMark =
    L"INSERT INTO System_offline_db_updates VALUES(-1, 3, GETDATE(), 0, NULL)";

constexpr const wchar_t* kLoadConfigurations =
    L"Select config_id, pacs_type, description, request_filename, response_filename, "
    L"bidirectional, response_for_paused_jobs, response_for_aborted_jobs, "
    L"response_for_nonrequests, ins_ovr_before_pacs, user_mapping_option, pacs_request_password, "
    L"pacs_response_password, last_user_id, last_change_date, flag1, string1, string2, flag2, "
    L"flag3, flag4, flag5, flag6, flag7, flag8, flag9, flag10, flag11, string4, string3, flag12, "
    L"flag13, flag14, flag15, flag16, string5, flag17, flag18\r\n"
    L" from Interface_PACS_cfg order by config_id";

constexpr const wchar_t* kLoadWorkstations =
    L"select p.pc_name,key_value = (select key_value from system_workstation_cfg where key_name = "
    L"'PACSConfig' and pc_name = p.pc_name), access_string, p.flag2 from system_pc_names p";

const WireColumns kWorkstationColumns = {{"pc_name", "nvarchar(50)"},
                                         {"key_value", "nvarchar(255)"},
                                         {"access_string", "nvarchar(255)"},
                                         {"flag2", "smallint"}};

const WireColumns kConfigurationColumns = {{"config_id", "smallint"},
                                           {"pacs_type", "smallint"},
                                           {"description", "nvarchar(255)"},
                                           {"request_filename", "nvarchar(255)"},
                                           {"response_filename", "nvarchar(2000)"},
                                           {"bidirectional", "smallint"},
                                           {"response_for_paused_jobs", "smallint"},
                                           {"response_for_aborted_jobs", "smallint"},
                                           {"response_for_nonrequests", "smallint"},
                                           {"ins_ovr_before_pacs", "smallint"},
                                           {"user_mapping_option", "smallint"},
                                           {"pacs_request_password", "smallint"},
                                           {"pacs_response_password", "smallint"},
                                           {"last_user_id", "int"},
                                           {"last_change_date", "datetime"},
                                           {"flag1", "smallint"},
                                           {"string1", "nvarchar(255)"},
                                           {"string2", "nvarchar(255)"},
                                           {"flag2", "smallint"},
                                           {"flag3", "smallint"},
                                           {"flag4", "smallint"},
                                           {"flag5", "smallint"},
                                           {"flag6", "int"},
                                           {"flag7", "smallint"},
                                           {"flag8", "smallint"},
                                           {"flag9", "smallint"},
                                           {"flag10", "smallint"},
                                           {"flag11", "smallint"},
                                           {"string4", "nvarchar(255)"},
                                           {"string3", "nvarchar(255)"},
                                           {"flag12", "smallint"},
                                           {"flag13", "smallint"},
                                           {"flag14", "smallint"},
                                           {"flag15", "smallint"},
                                           {"flag16", "smallint"},
                                           {"string5", "nvarchar(255)"},
                                           {"flag17", "smallint"},
                                           {"flag18", "smallint"}};

/// A row in load order whose later columns are all NULL.
ProbeRow oldRow(const std::wstring& id, const std::wstring& description) {
  ProbeRow row = {id,    L"7", description, L"C:\\req.xml", L"C:\\res.xml",
                  L"-1", L"0", L"1",        L"0",           L"8",
                  L"5",  L"1", L"2",        L"12",          L"2012-10-24T14:05:09",
                  L"10"};
  row.resize(38);
  return row;
}

using WireStatementTest = WireTest;

TEST_F(WireStatementTest, TheConnectionTestAsksForTheTime) {
  answerTestStatement();
  connect();
  EXPECT_TRUE(TestDatabaseConnection());
  EXPECT_THAT(newRecord(), ElementsAre(batch(L"SELECT GetDate()")));
}

TEST_F(WireStatementTest, ConfigurationsAreLoadedWithOneStatement) {
  ProbeRow full = oldRow(L"5", L"TCP/IP listener");
  const wchar_t* const later[] = {L"map.xml",     L"7,11",
                                  L"1",           L"1",
                                  L"2",           L"0",
                                  L"65000",       L"-1",
                                  L"5",           L"35",
                                  L"27",          L"2",
                                  L"C:\\ctx.xml", L"Accession ID,Account",
                                  L"0",           L"-1",
                                  L"0",           L"1",
                                  L"1",           L"C:\\close.xml",
                                  L"10",          L"1"};
  std::copy(std::begin(later), std::end(later), full.begin() + 16);
  answer(L"Select ", kConfigurationColumns, {oldRow(L"3", L"Łódź – O'Neil \"old\""), full});
  connect();

  colPACSConfiguration configurations;
  configurations.GetPACSConfigurations();

  EXPECT_THAT(newRecord(), ElementsAre(batch(kLoadConfigurations)));
  ASSERT_EQ(configurations.ColPACSConfigs->count(), 3U);
  const clsPACSConfiguration& old = *configurations.Item(2);
  EXPECT_EQ(old.configID, 3);
  EXPECT_EQ(old.PACSType, 7);
  EXPECT_EQ(old.Description, L"Łódź – O'Neil \"old\"");
  EXPECT_EQ(old.BiDirectional, -1);
  EXPECT_EQ(old.CofirmStartTrigger, 8);
  EXPECT_EQ(old.ManualEntryTrigger, 10);
  EXPECT_EQ(old.LastUpdateUserID, L"12");
  EXPECT_THAT(old.LastUpdateDate, ::testing::StartsWith(L"2012-10-24 14:05:09"));
  EXPECT_EQ(old.PollingDisplayField, 1);
  EXPECT_EQ(old.Port, 0);
  EXPECT_EQ(old.MultiAccessFields, L"");
  const clsPACSConfiguration& recent = *configurations.Item(3);
  EXPECT_EQ(recent.CustomXMLFile, L"map.xml");
  EXPECT_EQ(recent.Port, 65000);
  EXPECT_EQ(recent.DeleteFlag, -1);
  EXPECT_EQ(recent.PollingDisplayField, 27);
  EXPECT_EQ(recent.ContextXMLFile, L"C:\\ctx.xml");
  EXPECT_EQ(recent.MultiAccessFields, L"Accession ID,Account");
  EXPECT_EQ(recent.CloseDictationFile, L"C:\\close.xml");
  EXPECT_EQ(recent.SendAbortOnFailedOpen, 1);
}

TEST_F(WireStatementTest, WorkstationsAreLoadedWithOneStatement) {
  answer(L"select p.pc_name", kWorkstationColumns,
         {{L" READ-01 ", L"12", L"A1", L"1"},
          {L"RÖNTGEN-1", std::nullopt, std::nullopt, L"0"},
          {L"READ-03", L"0", L"", L"-1"}});
  connect();

  colWorkstation workstations;
  workstations.GetWorkstationsList();

  EXPECT_THAT(newRecord(), ElementsAre(batch(kLoadWorkstations)));
  EXPECT_THAT(messages, IsEmpty());
  ASSERT_EQ(workstations.ColWorkStations->count(), 3U);
  EXPECT_EQ(workstations.Item(1)->WorkStation, L"READ-01");
  EXPECT_EQ(workstations.Item(1)->configID, 12);
  EXPECT_EQ(workstations.Item(2)->WorkStation, L"RÖNTGEN-1");
  EXPECT_EQ(workstations.Item(2)->configID, 0);
  EXPECT_EQ(workstations.Item(3)->configID, 0);
  EXPECT_EQ(workstations.Item(3)->Flag2, -1);
}

TEST_F(WireStatementTest, MoreRowsThanOneBlockHoldsAreAllLoaded) {
  ProbeRows rows;
  for (int i = 0; i < 5000; ++i) {
    rows.push_back({L"PC-" + std::to_wstring(i), std::to_wstring(i % 100), L"", L"1"});
  }
  answer(L"select p.pc_name", kWorkstationColumns, rows);
  connect();
  colWorkstation workstations;
  workstations.GetWorkstationsList();
  ASSERT_EQ(workstations.ColWorkStations->count(), 5000U);
  EXPECT_EQ(workstations.Item(5000)->WorkStation, L"PC-4999");
  EXPECT_EQ(workstations.Item(5000)->configID, 99);
}

TEST_F(WireStatementTest, TheNextIdentifierComesFromTheLastRow) {
  answer(L"select config_id ", {{"config_id", "smallint"}}, {{L"1"}, {L"2"}, {L"7"}});
  connect();
  colPACSConfiguration configurations;
  EXPECT_EQ(configurations.GetNextConfigID(), 8);
  EXPECT_THAT(
      newRecord(),
      ElementsAre(batch(L"select config_id \r\n from Interface_PACS_cfg \r\norder by config_id")));
}

TEST_F(WireStatementTest, ASavedRecordIsATransactionAndItsMarkIsAnother) {
  modMain.g_objConfig = std::make_shared<HostSettings>(config);
  connect();
  clsPACSConfiguration record;
  record.configID = 12;
  record.Description = L"O'Neil – Zürich";
  for (const std::int16_t existing : {kFalse, kTrue}) {
    record.ExistingConfig = existing;
    const std::wstring statement = record.savingStatement();
    EXPECT_EQ(record.SaveConfiguration(), 0);
    EXPECT_THAT(newRecord(),
                ElementsAre(transaction("begin"), batch(statement), transaction("commit"),
                            transaction("begin"), batch(kOfflineMark), transaction("commit")));
  }
}

TEST_F(WireStatementTest, ATextThatWritesIsExecutedOnceHoweverLongItsCells) {
  const std::wstring text = L"INSERT INTO t OUTPUT inserted.note VALUES('')";
  const std::wstring note = std::wstring(4095, L'x') + std::wstring(10'000, L'ü');
  answer(L"INSERT", {{"note", "nvarchar(max)"}, {"id", "int"}},
         {{note, L"7"}, {std::nullopt, L"8"}});
  connect();
  const std::vector<Table> tables = {modMain.g_conSql->query(text),
                                     modMain.g_conSql->queryOnce(text)};
  for (const Table& table : tables) {
    ASSERT_EQ(table.rows(), 2U);
    EXPECT_EQ(table.at(0, 0), note);
    EXPECT_EQ(table.at(1, 0), L"7");
    EXPECT_EQ(table.at(0, 1), std::nullopt);
    EXPECT_EQ(table.at(1, 1), L"8");
  }
  EXPECT_THAT(newRecord(),
              ElementsAre(batch(text), transaction("begin"), batch(text), transaction("commit")));
}

TEST_F(WireStatementTest, TheFirstResultThatHasColumnsCounts) {
  storeSite();
  connect();
  const std::wstring change = L"UPDATE System_pc_names SET flag2 = 2\r\n\r\n";
  const std::wstring text = change +
                            L"SELECT pc_name FROM System_pc_names WHERE flag2 = 1\r\n\r\n"
                            L"SELECT pc_name, flag2, access_string FROM System_pc_names";
  EXPECT_EQ(modMain.g_conSql->query(change + change + text).columns(), 1U);
  EXPECT_EQ(modMain.g_conSql->queryOnce(text).columns(), 1U);
  EXPECT_EQ(modMain.g_conSql->query(change + change).columns(), 0U);
  EXPECT_THROW(modMain.g_conSql->query(text + L"\r\n\r\nSELECT a FROM missing"), odbc::Error);
}

TEST_F(WireStatementTest, AForeignTextThatOnlyReadsIsExecutedOnceWithoutATransaction) {
  const std::wstring text = L"SELECT note FROM t";
  answer(text, {{"note", "nvarchar(max)"}}, {{std::wstring(10'000, L'x')}});
  connect();
  EXPECT_EQ(modMain.g_conSql->queryOnce(text).at(0, 0), std::wstring(10'000, L'x'));
  EXPECT_THAT(newRecord(), ElementsAre(batch(text)));
}

}  // namespace
}  // namespace tlpacscfg::test
