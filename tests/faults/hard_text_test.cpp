#include <algorithm>

#include "config/columns.h"
#include "config/pacs_configurations.h"
#include "data/direct_connections.h"
#include "data/mod_main.h"
#include "data/statements.h"
#include "faults/hard_texts.h"
#include "harness/core_fixture.h"
#include "support/text.h"
#include "workstation/workstation.h"

namespace tlpacscfg::test {
namespace {

enum class Fate { Kept, Refused };

std::ptrdiff_t quotesIn(const std::wstring& text) {
  return std::count(text.begin(), text.end(), L'\'');
}

/// The text for SQLite, in letters that every driver manager passes on.
std::wstring spelled(const std::wstring& text) {
  constexpr const wchar_t* kDigits = L"0123456789ABCDEF";
  std::wstring digits;
  for (const char byte : toUtf8(text)) {
    digits += kDigits[static_cast<unsigned char>(byte) >> 4];
    digits += kDigits[static_cast<unsigned char>(byte) & 15];
  }
  return L"CAST(x'" + digits + L"' AS TEXT)";
}

class HardTextTest : public SiteTest {
 protected:
  HardTextTest() {
    modMain.g_objConfig = std::make_shared<HostSettings>(config);
    connectSilently();
  }

  static std::vector<const Column*> textColumns() {
    std::vector<const Column*> found;
    for (const Column& column : columns()) {
      if (isText(column.field) && column.onUpdate == Source::Record) found.push_back(&column);
    }
    return found;
  }

  static colPACSConfiguration::Pointer loaded(std::int16_t id) {
    colPACSConfiguration configurations;
    configurations.GetPACSConfigurations();
    const std::int16_t position = configurations.GetItemNumber(id);
    return position == 0 ? nullptr : configurations.Item(position);
  }

  /// Saves the record. Kept: it loads as it was. Refused: an error, and the rows as they were.
  void expectRoundTrip(clsPACSConfiguration record, Fate fate) {
    const std::wstring before = site.text(L"SELECT * FROM Interface_PACS_cfg");
    Fate found = Fate::Kept;
    try {
      record.SaveConfiguration();
    } catch (const RunTimeError& error) {
      found = Fate::Refused;
      EXPECT_FALSE(error.description().empty());
      EXPECT_EQ(site.text(L"SELECT * FROM Interface_PACS_cfg"), before);
    }
    EXPECT_EQ(found, fate);
    if (found == Fate::Refused) return;
    const colPACSConfiguration::Pointer again = loaded(record.configID);
    ASSERT_TRUE(again);
    for (const Column* column : textColumns()) {
      EXPECT_EQ(valueOf(*again, column->field), valueOf(record, column->field))
          << toUtf8(column->name);
    }
  }

  static clsPACSConfiguration recordOf(const std::vector<const Column*>& columns,
                                       const std::wstring& text) {
    clsPACSConfiguration record;
    record.configID = 7;
    record.LastUpdateUserID = L"1";
    for (const Column* column : columns) setValue(record, column->field, text);
    return record;
  }
};

/// A column whose quotes are not doubled takes a single quote for the end of the text.
TEST_F(HardTextTest, EveryTextColumnKeepsEveryTextOrRefusesIt) {
  std::vector<const Column*> doubled;
  std::vector<const Column*> undoubled;
  for (const Column* column : textColumns()) {
    (column->quoting == Quoting::Doubled ? doubled : undoubled).push_back(column);
  }
  EXPECT_EQ(doubled.size(), 3U);
  EXPECT_EQ(undoubled.size(), 5U);
  int kept = 0;
  int refused = 0;
  for (const HardText& hard : hardTexts()) {
    const bool quoted = quotesIn(hard.text) > 0;
    for (const std::int16_t existing : {kFalse, kTrue}) {
      SCOPED_TRACE(std::string(hard.name) + (existing ? ", again" : ", new"));
      site.run(L"DELETE FROM Interface_PACS_cfg");
      if (existing) addConfiguration(7, L"description = 'before'");
      if (quoted && hard.text.find(L"''") == hard.text.npos) {
        for (const Column* column : undoubled) {
          clsPACSConfiguration record = recordOf({column}, hard.text);
          record.ExistingConfig = existing;
          expectRoundTrip(record, Fate::Refused);
          ++refused;
        }
      }
      clsPACSConfiguration record = recordOf(quoted ? doubled : textColumns(), hard.text);
      record.ExistingConfig = existing;
      expectRoundTrip(record, Fate::Kept);
      ++kept;
    }
  }
  EXPECT_EQ(kept, 2 * 36);
  EXPECT_EQ(refused, 2 * 4 * 5);
}

TEST_F(HardTextTest, APairOfQuotesBecomesOneWhereQuotesAreNotDoubled) {
  // The one change that is meant: such a column's text is part of the statement as it stands.
  clsPACSConfiguration record;
  record.configID = 7;
  record.LastUpdateUserID = L"1";
  record.CustomXMLFile = L"the ''best'' one";
  record.SaveConfiguration();
  EXPECT_EQ(loaded(7)->CustomXMLFile, L"the 'best' one");
}

TEST_F(HardTextTest, ATextThatEndsInTheMiddleIsRefused) {
  for (const Column* column : textColumns()) {
    SCOPED_TRACE(toUtf8(column->name));
    expectRoundTrip(recordOf({column}, std::wstring(L"before\0after", 12)), Fate::Refused);
  }
}

/// Names come without blanks around them, and nothing else is changed.
TEST_F(HardTextTest, AssignmentsOfWorkstationsWithHardNamesAreStoredOrRefused) {
  int count = 0;
  for (const HardText& hard : hardTexts()) {
    const std::wstring name(trimBlanks(hard.text));
    if (name.empty()) continue;
    SCOPED_TRACE(hard.name);
    site.runAll({L"DELETE FROM System_pc_names", L"DELETE FROM System_workstation_cfg",
                 L"INSERT INTO System_pc_names VALUES(" + spelled(hard.text) + L", '', 1)",
                 L"INSERT INTO System_workstation_cfg VALUES(" + spelled(name) +
                     L", 38, 'PACSConfig', '1', -1, 0)"});
    colWorkstation workstations;
    workstations.GetWorkstationsList();
    ASSERT_TRUE(messages.empty()) << toUtf8(messages[0].text);
    ASSERT_EQ(workstations.ColWorkStations->count(), 1U);
    EXPECT_EQ(workstations.Item(1)->WorkStation, name);
    workstations.Item(1)->configID = 2;
    const bool refused = quotesIn(name) > 0 && name.find(L"''") == name.npos;
    if (quotesIn(name) > 0 && !refused) continue;
    if (refused) {
      EXPECT_THROW(workstations.SaveAllWorkStationSettings(), RunTimeError);
    } else {
      workstations.SaveAllWorkStationSettings();
    }
    EXPECT_EQ(site.rows(L"SELECT pc_name, key_value FROM System_workstation_cfg"),
              (ProbeRows{{name, refused ? L"1" : L"2"}}));
    ++count;
  }
  EXPECT_EQ(count, 33);
}

}  // namespace
}  // namespace tlpacscfg::test
