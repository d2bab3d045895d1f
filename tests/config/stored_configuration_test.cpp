#include "config/stored_configuration.h"

#include "data/direct_connections.h"
#include "data/mod_main.h"
#include "harness/core_fixture.h"
#include "harness/errors.h"
#include "harness/fake_client.h"
#include "harness/records.h"
#include "odbc/error.h"

namespace tlpacscfg::test {
namespace {

class StoredConfigurationTest : public SiteTest {
 protected:
  StoredConfigurationTest() {
    modMain.g_objConfig = std::make_shared<HostSettings>(config);
    addConfiguration(7, L"description = 'Seven'");
    connect();
  }

  static Configuration load(std::int16_t id) {
    SiteCommand command;
    return storedConfiguration(command, id);
  }

  /// Creates a trigger that changes the row after each update.
  void alterOnUpdate(const std::wstring& change) {
    site.run(
        L"CREATE TRIGGER alterOnUpdate AFTER UPDATE ON Interface_PACS_cfg BEGIN UPDATE "
        L"Interface_PACS_cfg SET " +
        change + L" WHERE config_id = 7; END");
  }

  void expectNotSaved(const clsPACSConfiguration& meant, const std::wstring& description) {
    clsPACSConfiguration record = meant;
    EXPECT_RUNTIME_ERROR(storeChanged(record, load(7)), odbc::kOdbcFailed, description);
    EXPECT_EQ(site.value(L"select description from Interface_PACS_cfg"), L"Seven");
    EXPECT_EQ(site.value(L"select count(*) from System_offline_db_updates"), L"0");
  }

  clsPACSConfiguration changed(const std::wstring& description = L"Changed") {
    clsPACSConfiguration record = *load(7);
    record.Description = description;
    return record;
  }
};

TEST_F(StoredConfigurationTest, ARecordOfDistinctValuesIsInsertedAndReadBackWhole) {
  clsPACSConfiguration record = distinctRecord();
  record.configID = 8;
  const colPACSConfiguration known;
  storeNew(record, known);
  EXPECT_EQ(record.ExistingConfig, kTrue);
  EXPECT_EQ(record.LastUpdateDate, kNowInRows);
  EXPECT_TRUE(isStoredAs(record, *load(8)));
  EXPECT_EQ(site.value(L"select count(*) from System_offline_db_updates"), L"1");
}

TEST_F(StoredConfigurationTest, AnUpdateSetsTheRecordsLastChange) {
  clsPACSConfiguration record = changed();
  EXPECT_FALSE(storeChanged(record, load(7)).has_value());
  EXPECT_EQ(record.LastUpdateUserID, L"4711");
  EXPECT_EQ(record.LastUpdateDate, kNowInRows);
}

TEST_F(StoredConfigurationTest, EveryFieldCountsAsContentButTheNumberAndTheLastChange) {
  const clsPACSConfiguration original = distinctRecord();
  int fields = 0;
  for (const Column& column : columns()) {
    clsPACSConfiguration other = original;
    std::visit([&](auto member) { other.*member = {}; }, column.field);
    if (!isStoredAs(original, other)) ++fields;
  }
  EXPECT_EQ(fields, 35);
  clsPACSConfiguration other = original;
  other.LastUpdateUserID = L"1";
  other.LastUpdateDate = L"then";
  other.Description += L"  ";
  EXPECT_TRUE(isStoredAs(original, other));
}

TEST_F(StoredConfigurationTest, ACutTextIsNotSaved) {
  alterOnUpdate(L"description = substr(description, 1, 4)");
  expectNotSaved(changed(),
                 L"Nothing was saved. Field 'Description': The database does not keep it "
                 L"as entered. It keeps 4 of 7 characters.");
}

TEST_F(StoredConfigurationTest, ALetterThatTheDatabaseReplacesIsNotSaved) {
  alterOnUpdate(L"description = replace(description, 'g', '?')");
  expectNotSaved(changed(),
                 L"Nothing was saved. Field 'Description': The database does not keep it "
                 L"as entered. It keeps '?' instead of 'g'.");
}

TEST_F(StoredConfigurationTest, ATextThatLosesLettersInsideIsNotSaved) {
  alterOnUpdate(L"description = replace(description, char(92), '')");
  expectNotSaved(changed(L"a\\b"),
                 L"Nothing was saved. Field 'Description': The database does not "
                 L"keep it as entered. It keeps 'ab' instead of 'a\\b'.");
}

TEST_F(StoredConfigurationTest, ANumberThatBecomesAnotherIsNotSaved) {
  alterOnUpdate(L"flag6 = 7");
  clsPACSConfiguration record = changed();
  record.Port = 104;
  expectNotSaved(record,
                 L"Nothing was saved. Field 'Port': The database does not keep it as "
                 L"entered. It keeps 7 instead of 104.");
}

TEST_F(StoredConfigurationTest, ASwappedDateIsNotSaved) {
  alterOnUpdate(L"last_change_date = '2026-05-01 09:08:07'");
  expectNotSaved(changed(),
                 L"Nothing was saved. Field 'LastUpdateDate': The database understands "
                 L"it as '2026-05-01 09:08:07'.");
}

TEST_F(StoredConfigurationTest, AnotherUserIsNotSaved) {
  alterOnUpdate(L"last_user_id = 1");
  expectNotSaved(changed(),
                 L"Nothing was saved. Field 'LastUpdateUserID': The database does not "
                 L"keep it as entered. It keeps '1' instead of '4711'.");
}

TEST_F(StoredConfigurationTest, DatesThatKeepMinutesDaysOrFractionsAreTheSame) {
  for (const wchar_t* kept :
       {L"2026-01-05 09:08:00", L"2026-01-05 09:09:00", L"2026-01-05", L"2026-01-05 00:00:00",
        L"2026-01-05 09:08:07.000", L"2026-01-05 09:08:07.0000000"}) {
    alterOnUpdate(std::wstring(L"last_change_date = '") + kept + L"'");
    clsPACSConfiguration record = changed(kept);
    EXPECT_FALSE(storeChanged(record, load(7)).has_value());
    site.run(L"DROP TRIGGER alterOnUpdate");
  }
}

TEST_F(StoredConfigurationTest, TrailingBlanksAreNoDifference) {
  alterOnUpdate(L"description = description || '   '");
  clsPACSConfiguration record = changed();
  EXPECT_FALSE(storeChanged(record, load(7)).has_value());
}

TEST_F(StoredConfigurationTest, ARowThatTheUpdateRemovesIsNotSaved) {
  site.run(
      L"CREATE TRIGGER lose AFTER UPDATE ON Interface_PACS_cfg BEGIN DELETE FROM "
      L"Interface_PACS_cfg; END");
  expectNotSaved(changed(), L"Nothing was saved. The configuration is not in the database.");
}

TEST_F(StoredConfigurationTest, ARowThatSurvivesTheDeleteIsReported) {
  const Configuration loaded = load(7);
  site.run(
      L"CREATE TRIGGER keep BEFORE DELETE ON Interface_PACS_cfg BEGIN SELECT RAISE(IGNORE); "
      L"END");
  const auto deleteIt = [&] {
    SiteCommand command;
    return deleteStored(command, *loaded);
  };
  EXPECT_RUNTIME_ERROR(deleteIt(), odbc::kOdbcFailed,
                       L"Nothing was saved. The configuration is still in the database.");
}

TEST_F(StoredConfigurationTest, AFailedMarkRollsBackTheChange) {
  site.run(
      L"CREATE TRIGGER refuse BEFORE INSERT ON System_offline_db_updates BEGIN SELECT "
      L"RAISE(ABORT, 'refused'); END");
  expectNotSaved(changed(), L"HY000: [SQLite]refused (19)");
}

TEST_F(StoredConfigurationTest, ARefusedInsertIsNotReportedAsATakenNumber) {
  site.run(
      L"CREATE TRIGGER refuse BEFORE INSERT ON Interface_PACS_cfg BEGIN SELECT RAISE(ABORT, "
      L"'refused'); END");
  clsPACSConfiguration record;
  record.configID = 8;
  EXPECT_RUNTIME_ERROR(storeNew(record, colPACSConfiguration()), odbc::kOdbcFailed,
                       L"HY000: [SQLite]refused (19)");
  EXPECT_EQ(record.ExistingConfig, kFalse);
}

class UnpairedQuoteTest : public StoredConfigurationTest,
                          public ::testing::WithParamInterface<const Column*> {};

TEST_P(UnpairedQuoteTest, IsReportedBeforeAnythingIsSent) {
  const Column& column = *GetParam();
  for (const wchar_t* text : {L"a' --", L"'", L"x' /*", L"'''", L"a''b'c"}) {
    clsPACSConfiguration record = changed();
    setValue(record, column.field, std::wstring(text));
    logOn();
    EXPECT_RUNTIME_ERROR(storeChanged(record, load(7)), odbc::kOdbcFailed,
                         L"Nothing was saved. Field '" + std::wstring(column.property) +
                             L"': It holds a single quote. Write it twice, or leave it out.");
    EXPECT_EQ(log(), "");
  }
}

TEST_P(UnpairedQuoteTest, ButAPairIsSentUnchangedAndStoredAsOne) {
  const Column& column = *GetParam();
  for (const auto& [sent, stored] : {std::pair{L"a''b", L"a'b"}, std::pair{L"''''", L"''"}}) {
    clsPACSConfiguration record = changed();
    setValue(record, column.field, std::wstring(sent));
    EXPECT_FALSE(storeChanged(record, load(7)).has_value());
    EXPECT_EQ(valueOf(*load(7), column.field), FieldValue(std::wstring(stored)));
    EXPECT_EQ(valueOf(record, column.field), FieldValue(std::wstring(sent)));
    clsPACSConfiguration next = record;
    next.Port += 1;
    EXPECT_FALSE(storeChanged(next, std::make_shared<clsPACSConfiguration>(record)).has_value())
        << "Nobody else changed it.";
  }
}

std::vector<const Column*> columnsWithPlainQuotes() {
  std::vector<const Column*> found;
  for (const Column& column : columns()) {
    const std::wstring_view name = column.name;
    if (name.starts_with(L"string")) found.push_back(&column);
  }
  return found;
}

INSTANTIATE_TEST_SUITE_P(Columns, UnpairedQuoteTest, ::testing::ValuesIn(columnsWithPlainQuotes()));

TEST_F(StoredConfigurationTest, QuotesInTheColumnsThatDoubleThemAreStored) {
  clsPACSConfiguration record = changed(L"O'Neil' --");
  record.RequestFileName = L"'";
  record.ResponseFileName = L"'''";
  EXPECT_FALSE(storeChanged(record, load(7)).has_value());
  EXPECT_EQ(load(7)->ResponseFileName, L"'''");
}

}  // namespace
}  // namespace tlpacscfg::test
