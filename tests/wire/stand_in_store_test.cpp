#include <gmock/gmock.h>

#include "config/columns.h"
#include "config/pacs_configurations.h"
#include "data/direct_connections.h"
#include "data/mod_main.h"
#include "data/statements.h"
#include "data/workstation_key.h"
#include "odbc/error.h"
#include "wire/wire_fixture.h"
#include "workstation/workstation.h"

namespace tlpacscfg::test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class WireStoreTest : public WireTest {
 protected:
  void useSite(const SiteTraits& traits = {}) {
    storeSite(traits);
    connect();
  }

  static void execute(const std::wstring& sql) { modMain.g_conSql->execute(sql); }

  static std::wstring answered(const std::wstring& sql) {
    const Table table = modMain.g_conSql->query(sql);
    std::wstring text;
    for (std::size_t row = 0; row < table.rows(); ++row) {
      if (row > 0) text += L'\n';
      for (std::size_t column = 0; column < table.columns(); ++column) {
        if (column > 0) text += L'|';
        text += table.at(column, row).value_or(L"NULL");
      }
    }
    return text;
  }

  static void expectFailure(const std::wstring& sql, std::int32_t number) {
    try {
      modMain.g_conSql->execute(sql);
      ADD_FAILURE() << "The statement did not fail.";
    } catch (const odbc::Error& error) {
      EXPECT_EQ(error.nativeError(), number) << toUtf8(error.description());
    }
  }

  /// A new connection to the same server.
  void connectAgain() {
    DisconnectDatabase();
    connect();
  }
};

std::wstring insertName(const std::wstring& name, const std::wstring& access = L"") {
  return L"INSERT INTO System_pc_names VALUES('" + name + L"', '" + access + L"', 1)";
}

TEST_F(WireStoreTest, ASavedConfigurationIsLoadedAsItWasSaved) {
  useSite();
  clsPACSConfiguration record;
  record.configID = 13;
  record.Description = L"O'Neil – Łódź \U0001F3E5";
  record.RequestFileName = L"C:\\req.xml";
  record.LastUpdateUserID = L"7";
  record.BiDirectional = -1;
  record.Port = 65000;
  record.SaveConfiguration();

  colPACSConfiguration configurations;
  configurations.GetPACSConfigurations();
  ASSERT_EQ(configurations.ColPACSConfigs->count(), 2U);
  const clsPACSConfiguration& loaded = *configurations.Item(2);
  EXPECT_EQ(loaded.Description, record.Description);
  EXPECT_EQ(loaded.RequestFileName, L"C:\\req.xml");
  EXPECT_EQ(loaded.LastUpdateUserID, L"7");
  EXPECT_EQ(loaded.LastUpdateDate, L"2026-01-05 09:08:07.000");
  EXPECT_EQ(loaded.BiDirectional, -1);
  EXPECT_EQ(loaded.Port, 65000);
  EXPECT_EQ(siteRows(L"SELECT config_id, flag6, last_change_date FROM Interface_PACS_cfg"),
            ProbeRows({{L"13", L"65000", L"2026-01-05 09:08:07"}}));
  EXPECT_EQ(siteRows(L"SELECT user_id, update_type, string1 FROM System_offline_db_updates"),
            ProbeRows({{L"-1", L"3", std::nullopt}}));
}

TEST_F(WireStoreTest, AnUpdateChangesOneRowAndADeletionRemovesIt) {
  useSite();
  clsPACSConfiguration record;
  for (const std::int16_t id : {std::int16_t{3}, std::int16_t{4}}) {
    record.ClearAllFields();
    record.ExistingConfig = kFalse;
    record.configID = id;
    record.LastUpdateUserID = L"7";
    record.SaveConfiguration();
  }
  record.Description = L"changed";
  record.SaveConfiguration();
  const std::wstring select = L"SELECT config_id, description FROM Interface_PACS_cfg";
  EXPECT_EQ(siteRows(select), ProbeRows({{L"3", L""}, {L"4", L"changed"}}));

  colPACSConfiguration configurations;
  configurations.GetPACSConfigurations();
  EXPECT_EQ(configurations.GetNextConfigID(), 5);
  configurations.RemoveConfig(3);
  EXPECT_THAT(messages, IsEmpty());
  EXPECT_EQ(siteRows(select), ProbeRows({{L"4", L"changed"}}));
}

TEST_F(WireStoreTest, ASelectOfOneConfigurationFindsIt) {
  useSite();
  clsPACSConfiguration record;
  record.configID = 7;
  record.Description = L"found";
  record.LastUpdateUserID = L"7";
  record.SaveConfiguration();
  std::wstring statement = loadingStatement();
  statement.replace(statement.find(L" order by"), statement.npos, L" where config_id = 7");
  const Table table = modMain.g_conSql->query(statement);
  ASSERT_EQ(table.rows(), 1U);
  EXPECT_EQ(table.columns(), kColumnCount);
  EXPECT_EQ(table.at(0, 0), L"7");
  EXPECT_EQ(table.at(2, 0), L"found");
  EXPECT_EQ(answered(L"SELECT TOP 1 config_id FROM Interface_PACS_cfg ORDER BY config_id DESC"),
            L"7");
}

TEST_F(WireStoreTest, AssignmentsAreStoredAndListed) {
  useSite();
  runAtSite(L"INSERT INTO System_pc_names VALUES('READ-01', 'A1', 1)");
  runAtSite(L"INSERT INTO System_pc_names VALUES('READ-02', NULL, 0)");
  colWorkstation changed;
  changed.AddWS(12, L"read-01");
  changed.SaveAllWorkStationSettings();
  changed.SaveAllWorkStationSettings();
  EXPECT_EQ(WorkstationConfigExists(L"READ-01"), 1);
  EXPECT_EQ(WorkstationConfigExists(L"READ-02"), 0);

  colWorkstation listed;
  listed.GetWorkstationsList();
  EXPECT_THAT(messages, IsEmpty());
  ASSERT_EQ(listed.ColWorkStations->count(), 2U);
  EXPECT_EQ(listed.Item(1)->configID, 12);
  EXPECT_EQ(listed.Item(1)->Flag2, 1);
  EXPECT_EQ(listed.Item(2)->configID, 0);
  EXPECT_EQ(siteRows(L"SELECT pc_name, key_value FROM System_workstation_cfg"),
            ProbeRows({{L"read-01", L"12"}}));
}

TEST_F(WireStoreTest, TheConnectionTestGetsTheTime) {
  useSite();
  EXPECT_TRUE(TestDatabaseConnection());
  EXPECT_EQ(answered(L"SELECT 1"), L"1");
  EXPECT_THAT(answered(L"SELECT GetDate()"), ::testing::StartsWith(L"20"));
  EXPECT_EQ(answered(L"SELECT count(*) FROM System_pc_names"), L"0");
}

TEST_F(WireStoreTest, AScriptedAnswerOverridesTheStore) {
  answer(L"SELECT access_string", {{"access_string", "nvarchar(9)"}}, {{L"scripted"}});
  useSite();
  EXPECT_EQ(answered(L"SELECT access_string FROM System_pc_names"), L"scripted");
}

TEST_F(WireStoreTest, SettingsAndTransactionsInSqlNeedNoStore) {
  connect();
  newRecord();
  for (const wchar_t* const text :
       {L"SET TRANSACTION ISOLATION LEVEL SERIALIZABLE", L"BEGIN TRANSACTION", L"COMMIT"}) {
    modMain.g_conSql->query(text);
  }
  EXPECT_THAT(newRecord(), ElementsAre(batch(L"SET TRANSACTION ISOLATION LEVEL SERIALIZABLE"),
                                       batch(L"BEGIN TRANSACTION"), transaction("begin"),
                                       batch(L"COMMIT"), transaction("commit")));
}

TEST_F(WireStoreTest, AnErrorOfAStatementHasItsNumber) {
  useSite();
  execute(insertName(L"A"));
  expectFailure(insertName(L"a"), 2627);
  expectFailure(L"INSERT INTO System_pc_names VALUES(NULL, '', 1)", 515);
  expectFailure(L"UPDATE System_pc_names SET nowhere = 1", 207);
  expectFailure(L"UPDATE Nowhere SET flag2 = 1", 208);
  // A table is looked for when its statement runs.
  expectFailure(insertName(L"a") + L"\n\nDELETE FROM Nowhere", 2627);
  expectFailure(L"INSERT INTO System_pc_names VALUES('B')", 213);
  expectFailure(L"UPDATE System_pc_names SET SET", 102);
  expectFailure(L"UPDATE System_pc_names SET pc_name = 'B", 105);
  expectFailure(L"UPDATE System_pc_names SET flag2 = 'many'", 245);
  expectFailure(L"UPDATE System_pc_names SET flag2 = 32768", 220);
  expectFailure(L"INSERT INTO System_offline_db_updates VALUES(1, 1, 'today', 0, '')", 241);
  EXPECT_EQ(siteRows(L"SELECT * FROM System_pc_names"), ProbeRows({{L"A", L"", L"1"}}));
}

TEST_F(WireStoreTest, AFailedStatementOfABatchUndoesTheOthersOfItsTransaction) {
  useSite();
  expectFailure(insertName(L"A") + L"\r\n\r\n" + insertName(L"A"), 2627);
  EXPECT_THAT(siteRows(L"SELECT * FROM System_pc_names"), IsEmpty());
  execute(insertName(L"A") + L"\r\n" + insertName(L"B"));
  EXPECT_EQ(answered(L"SELECT pc_name FROM System_pc_names"), L"A\nB");
}

TEST_F(WireStoreTest, AFailedConversionRollsBackTheTransaction) {
  useSite();
  newRecord();
  const std::wstring batchText = insertName(L"A") + L"\r\nUPDATE System_pc_names SET flag2 = 'x'";
  expectFailure(batchText, 245);
  EXPECT_THAT(newRecord(),
              ElementsAre(transaction("begin"), batch(batchText), transaction("undone"),
                          batch(L"IF @@TRANCOUNT = 0 BEGIN TRANSACTION")));
  EXPECT_THAT(siteRows(L"SELECT * FROM System_pc_names"), IsEmpty());
}

TEST_F(WireStoreTest, ATransactionMayBeWrittenInStatements) {
  useSite();
  modMain.g_conSql->query(L"BEGIN TRANSACTION");
  modMain.g_conSql->query(insertName(L"A"));
  EXPECT_THAT(siteRows(L"SELECT * FROM System_pc_names"), IsEmpty());
  modMain.g_conSql->query(L"ROLLBACK TRANSACTION");
  modMain.g_conSql->query(L"BEGIN TRANSACTION");
  modMain.g_conSql->query(insertName(L"B"));
  modMain.g_conSql->query(L"COMMIT TRANSACTION");
  EXPECT_EQ(siteRows(L"SELECT pc_name FROM System_pc_names"), ProbeRows({{L"B"}}));
}

TEST_F(WireStoreTest, ABatchMayAskForTheTransactionAndForTheRowsChanged) {
  useSite();
  modMain.g_conSql->query(insertName(L"A") + L"\r\n" + insertName(L"B"));
  modMain.g_conSql->query(L"UPDATE System_pc_names SET flag2 = 2");
  EXPECT_EQ(answered(L"SELECT @@ROWCOUNT"), L"2");
  EXPECT_EQ(answered(L"SELECT @@TRANCOUNT"), L"0");
  const std::wstring clear = L" DELETE FROM System_pc_names";
  modMain.g_conSql->query(L"IF @@TRANCOUNT > 0" + clear);
  EXPECT_EQ(answered(L"SELECT count(*) FROM System_pc_names"), L"2");
  modMain.g_conSql->query(L"BEGIN TRANSACTION IF @@TRANCOUNT = 1" + clear + L" COMMIT TRANSACTION");
  EXPECT_EQ(answered(L"SELECT count(*) FROM System_pc_names"), L"0");
}

TEST_F(WireStoreTest, XactAbortMakesAnyErrorRollBackTheTransaction) {
  useSite();
  modMain.g_conSql->query(L"SET XACT_ABORT ON");
  newRecord();
  const std::wstring twice = insertName(L"A") + L"\r\n" + insertName(L"A");
  expectFailure(twice, 2627);
  EXPECT_THAT(newRecord(), ElementsAre(transaction("begin"), batch(twice), transaction("undone"),
                                       batch(L"IF @@TRANCOUNT = 0 BEGIN TRANSACTION")));
}

TEST_F(WireStoreTest, ReadingLocksTheRowsOnlyWhenRequested) {
  useSite();
  const std::wstring other = L"INSERT INTO System_pc_names VALUES('OTHER', '', 1)";
  const std::wstring clear = L"DELETE FROM System_pc_names";
  const std::wstring select = L"SELECT pc_name FROM System_pc_names";

  modMain.g_conSql->query(L"BEGIN TRANSACTION");
  modMain.g_conSql->query(select);
  runAtSite(other);
  EXPECT_EQ(answered(select), L"OTHER");
  modMain.g_conSql->query(L"ROLLBACK");
  runAtSite(clear);

  modMain.g_conSql->query(L"SET TRANSACTION ISOLATION LEVEL SERIALIZABLE");
  modMain.g_conSql->query(L"BEGIN TRANSACTION");
  modMain.g_conSql->query(select);
  EXPECT_THROW(runAtSite(other), std::runtime_error);
  modMain.g_conSql->query(L"ROLLBACK");

  modMain.g_conSql->query(L"SET TRANSACTION ISOLATION LEVEL READ COMMITTED");
  modMain.g_conSql->query(L"BEGIN TRANSACTION");
  modMain.g_conSql->query(select + L" WITH (UPDLOCK, HOLDLOCK)");
  EXPECT_THROW(runAtSite(other), std::runtime_error);
  modMain.g_conSql->query(L"COMMIT");
  runAtSite(other);
}

TEST_F(WireStoreTest, AWriterWaitsForAnotherConnectionUntilItsTimeLimit) {
  useSite();
  modMain.g_conSql->query(L"BEGIN TRANSACTION");
  modMain.g_conSql->query(insertName(L"A"));
  const auto waiting = modMain.g_conSql;
  modMain.g_blnSqlConnected = false;
  connect();
  modMain.g_conSql->limitStatements({.time = std::chrono::seconds(1)});
  EXPECT_THROW(execute(insertName(L"B")), odbc::Error);
  waiting->query(L"COMMIT");
  execute(insertName(L"C"));
  EXPECT_EQ(siteRows(L"SELECT pc_name FROM System_pc_names"), ProbeRows({{L"A"}, {L"C"}}));
}

TEST_F(WireStoreTest, ACodePageKeepsOnlyItsLetters) {
  useSite({.codePage = true});
  execute(insertName(L"A", L"Zürich Łódź 5 €"));
  EXPECT_EQ(answered(L"SELECT access_string FROM System_pc_names"), L"Zürich ?ód? 5 ?");
}

TEST_F(WireStoreTest, ALongTextIsStoredTruncatedOrRefused) {
  const std::wstring wide(256, L'x');
  const std::wstring select = L"SELECT access_string FROM System_pc_names";
  useSite();
  execute(insertName(L"A", wide));
  EXPECT_EQ(answered(select), wide);

  storeSite({.widths = SiteTraits::Widths::Cut});
  connectAgain();
  execute(insertName(L"A", wide));
  EXPECT_EQ(answered(select), wide.substr(1));
  execute(L"UPDATE System_pc_names SET access_string = '" + wide + L"y'");
  EXPECT_EQ(answered(select), wide.substr(1));

  storeSite({.widths = SiteTraits::Widths::Refused});
  connectAgain();
  expectFailure(insertName(L"A", wide), 8152);
  execute(insertName(L"A", wide.substr(1)));
  EXPECT_EQ(answered(select), wide.substr(1));
}

TEST_F(WireStoreTest, ABackslashBeforeALineBreakMayVanish) {
  const std::wstring select = L"SELECT access_string FROM System_pc_names";
  useSite();
  execute(insertName(L"A", L"C:\\\r\nx"));
  EXPECT_EQ(answered(select), L"C:\\\r\nx");

  storeSite({.joinsLines = true});
  connectAgain();
  execute(insertName(L"A", L"C:\\\r\nx"));
  EXPECT_EQ(answered(select), L"C:x");
}

TEST_F(WireStoreTest, DayAndMonthMayBeSwapped) {
  const std::wstring select = L"SELECT update_date FROM System_offline_db_updates";
  const auto insert = [](const std::wstring& date) {
    return L"INSERT INTO System_offline_db_updates VALUES(1, 1, '" + date + L"', 0, '')";
  };
  useSite({.dayFirst = true});
  execute(insert(L"2026-02-01 10:00:00"));
  EXPECT_EQ(answered(select), L"2026-01-02 10:00:00.000");
  execute(L"DELETE FROM System_offline_db_updates");
  execute(insert(L"2026-02-01T10:00:00"));
  EXPECT_EQ(answered(select), L"2026-02-01 10:00:00.000");
  execute(L"UPDATE System_offline_db_updates SET flag1 = 1");
  EXPECT_EQ(answered(select), L"2026-02-01 10:00:00.000");
  expectFailure(insert(L"2026-02-13 10:00:00"), 242);
}

}  // namespace
}  // namespace tlpacscfg::test
