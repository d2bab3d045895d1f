#include <algorithm>
#include <iostream>

#include "config/columns.h"
#include "config/pacs_configurations.h"
#include "data/database.h"
#include "data/mod_main.h"
#include "data/statements.h"
#include "faults/hard_texts.h"
#include "harness/core_test.h"
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

  std::wstring allRows() const {
    std::wstring text;
    for (const ProbeRow& row : site.rows(L"SELECT * FROM Interface_PACS_cfg ORDER BY config_id")) {
      for (const std::optional<std::wstring>& cell : row) text += cell.value_or(L"NULL") + L"|";
    }
    return text;
  }

  static colPACSConfiguration::Pointer loaded(std::int16_t id) {
    colPACSConfiguration configurations;
    configurations.GetPACSConfigurations();
    const std::int16_t position = configurations.GetItemNumber(id);
    return position == 0 ? nullptr : configurations.Item(position);
  }

  /// Saves the record. Kept: it loads as it was. Refused: an error, and the rows as they were.
  void expectRoundTrip(clsPACSConfiguration record, Fate fate) {
    const std::wstring before = allRows();
    Fate found = Fate::Kept;
    try {
      record.SaveConfiguration();
    } catch (const RunTimeError& error) {
      found = Fate::Refused;
      EXPECT_FALSE(error.description().empty());
      EXPECT_EQ(allRows(), before);
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

  /// Every text in the column, in a new row and in one that is there.
  int runColumn(const Column& column) {
    int count = 0;
    for (const HardText& hard : hardTexts()) {
      // A column whose quotes are not doubled takes a pair of them for one, and any other number
      // for the end of the text.
      const std::ptrdiff_t quotes = column.quoting == Quoting::Doubled ? 0 : quotesIn(hard.text);
      if (quotes > 0 && hard.text.find(L"''") != hard.text.npos) continue;
      for (const std::int16_t existing : {kFalse, kTrue}) {
        SCOPED_TRACE(toUtf8(column.name) + ", " + hard.name + (existing ? ", again" : ", new"));
        site.runAll({L"DELETE FROM Interface_PACS_cfg"});
        if (existing) addConfiguration(7, L"description = 'before'");
        clsPACSConfiguration record;
        record.configID = 7;
        record.ExistingConfig = existing;
        record.LastUpdateUserID = L"1";
        setValue(record, column.field, hard.text);
        expectRoundTrip(record, quotes > 0 ? Fate::Refused : Fate::Kept);
        ++count;
      }
    }
    return count;
  }
};

TEST_F(HardTextTest, EveryTextColumnKeepsEveryTextOrRefusesIt) {
  int count = 0;
  for (const Column* column : textColumns()) count += runColumn(*column);
  std::cout << count << " round trips\n";
  EXPECT_EQ(textColumns().size(), 8U);
  EXPECT_EQ(count, 8 * 2 * 36 - 5 * 2);
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
    clsPACSConfiguration record;
    record.configID = 7;
    record.LastUpdateUserID = L"1";
    setValue(record, column->field, std::wstring(L"before\0behind", 13));
    expectRoundTrip(record, Fate::Refused);
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
  std::cout << count << " names\n";
  EXPECT_EQ(count, 33);
}

}  // namespace
}  // namespace tlpacscfg::test
