#include <gmock/gmock.h>

#include "config/stored_configuration.h"
#include "data/direct_connections.h"
#include "data/mod_main.h"
#include "harness/errors.h"
#include "odbc/error.h"
#include "wire/wire_fixture.h"
#include "workstation/assignments.h"

/// The statements of the windows' commands, and their response to a database that stores other
/// values.
namespace tlpacscfg::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr const wchar_t* kInsert =
    L"INSERT INTO Interface_PACS_cfg VALUES(7, 0, 'Seven', '', '', 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, "
    L"'2012-10-24 14:05:09', '', '', 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, '', '', 0, 0, 0, 0, 0, '', 0, "
    L"0)";

class WireStoringTest : public WireTest {
 protected:
  void open(const SiteTraits& traits = {}) {
    storeSite(traits);
    modMain.g_objConfig = std::make_shared<HostSettings>(config);
    connect();
    runAtSite(kInsert);
  }

  static Configuration load() {
    SiteCommand command;
    return storedConfiguration(command, 7);
  }

  void expectNotSaved(const clsPACSConfiguration& meant, const std::wstring& description) {
    clsPACSConfiguration record = meant;
    EXPECT_RUNTIME_ERROR(storeChanged(record, load()), odbc::kOdbcFailed, description);
    EXPECT_EQ(siteRows(L"select description from Interface_PACS_cfg"), ProbeRows({{L"Seven"}}));
    EXPECT_THAT(siteRows(L"select user_id from System_offline_db_updates"), IsEmpty());
  }

  static clsPACSConfiguration described(const std::wstring& description) {
    clsPACSConfiguration record = *load();
    record.Description = description;
    return record;
  }
};

TEST_F(WireStoringTest, ASaveIsOneTransactionThatReadsTheRowBeforeAndAfter) {
  open();
  clsPACSConfiguration record = described(L"Changed");
  const Configuration loaded = load();
  newRecord();
  EXPECT_FALSE(storeChanged(record, loaded).has_value());
  const std::string look = batch(loadingStatement(7));
  EXPECT_THAT(
      newRecord(),
      ElementsAre(batch(L"SET TRANSACTION ISOLATION LEVEL SERIALIZABLE"), transaction("begin"),
                  look, batch(record.savingStatement()), look,
                  batch(L"INSERT INTO System_offline_db_updates VALUES(-1, 3, GETDATE(), 0, "
                        L"NULL)"),
                  transaction("commit"), batch(L"SET TRANSACTION ISOLATION LEVEL READ COMMITTED")));
}

TEST_F(WireStoringTest, ALetterThatTheCodePageLacksIsNotSaved) {
  open({.codePage = true});
  expectNotSaved(described(L"\u0141\u00f3d\u017a"),
                 L"Nothing was saved. Field 'Description': The database does not keep it as "
                 L"entered. It keeps '?' instead of '\u0141'.");
}

TEST_F(WireStoringTest, ATextThatTheColumnTruncatesIsNotSaved) {
  open({.widths = SiteTraits::Widths::Cut});
  const std::wstring text(10'000, L'x');
  clsPACSConfiguration record = described(text);
  try {
    static_cast<void>(storeChanged(record, load()));
    ADD_FAILURE() << "Nothing was thrown.";
  } catch (const FieldError& error) {
    EXPECT_STREQ(error.column().property, L"Description");
    EXPECT_THAT(error.description(), ::testing::HasSubstr(L" of 10000 characters."));
  }
  EXPECT_EQ(siteRows(L"select description from Interface_PACS_cfg"), ProbeRows({{L"Seven"}}));
}

TEST_F(WireStoringTest, ATextThatTheColumnRefusesIsNotSaved) {
  open({.widths = SiteTraits::Widths::Refused});
  clsPACSConfiguration record = described(std::wstring(10'000, L'x'));
  EXPECT_THROW(static_cast<void>(storeChanged(record, load())), odbc::Error);
  EXPECT_EQ(siteRows(L"select description from Interface_PACS_cfg"), ProbeRows({{L"Seven"}}));
}

TEST_F(WireStoringTest, ABackslashBeforeALineBreakThatVanishesIsNotSaved) {
  open({.joinsLines = true});
  expectNotSaved(described(L"one\\\r\ntwo"),
                 L"Nothing was saved. Field 'Description': The database does not keep it as "
                 L"entered. It keeps 'onetwo' instead of 'one\\\r\ntwo'.");
}

TEST_F(WireStoringTest, ADateWhoseDayAndMonthAreSwappedIsNotSaved) {
  open({.dayFirst = true});
  clsPACSConfiguration record = described(L"Changed");
  try {
    static_cast<void>(storeChanged(record, load()));
    ADD_FAILURE() << "Nothing was thrown.";
  } catch (const FieldError& error) {
    EXPECT_STREQ(error.column().property, L"LastUpdateDate");
    EXPECT_THAT(error.description(),
                ::testing::HasSubstr(L"understands it as '2026-05-01 09:08:07"));
  }
  EXPECT_EQ(siteRows(L"select description from Interface_PACS_cfg"), ProbeRows({{L"Seven"}}));
}

TEST_F(WireStoringTest, AssignmentsAreOneTransactionWhateverTheirNumber) {
  storeSite();
  connect();
  for (int i = 1; i <= 150; ++i) {
    runAtSite(L"INSERT INTO System_pc_names VALUES('PC-" + std::to_wstring(i) + L"', '', 1)");
  }
  colWorkstation workstations;
  workstations.GetWorkstationsList();
  newRecord();
  EXPECT_THAT(saveAssignments(workstations, {}, [](std::size_t, std::size_t) {}), IsEmpty());
  const std::vector<std::string> told = newRecord();
  EXPECT_EQ(std::ranges::count(told, transaction("begin")), 1);
  EXPECT_EQ(std::ranges::count(told, transaction("commit")), 1);
  EXPECT_EQ(std::ranges::count(told, batch(kListStatement)), 2);
  EXPECT_EQ(told.size(), 9U);
  EXPECT_EQ(siteRows(L"select count(*) from System_workstation_cfg"), ProbeRows({{L"150"}}));
}

TEST_F(WireStoringTest, EveryStatementOfTheConnectionHasATimeLimit) {
  connect();
  EXPECT_EQ(modMain.g_conSql->limits().time, kStatementTime);
}

}  // namespace
}  // namespace tlpacscfg::test
