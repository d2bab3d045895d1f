#include "harness/offline_fixture.h"

#include <algorithm>
#include <sstream>

#include "data/direct_connections.h"
#include "data/mod_main.h"
#include "harness/machine.h"
#include "harness/scratch.h"
#include "support/text.h"

namespace tlpacscfg::test {
namespace {

/// "a","b",NULL
std::vector<std::optional<std::string>> cellsOf(const std::string& line) {
  std::vector<std::optional<std::string>> cells;
  for (std::size_t at = 0; at < line.size();) {
    if (line[at] == '"') {
      const std::size_t end = line.find('"', at + 1);
      cells.emplace_back(line.substr(at + 1, end - at - 1));
      at = end + 2;
    } else {
      const std::size_t end = std::min(line.find(',', at), line.size());
      const std::string word = line.substr(at, end - at);
      if (word == "NULL") {
        cells.emplace_back();
      } else {
        cells.emplace_back(word);
      }
      at = end + 1;
    }
  }
  return cells;
}

}  // namespace

OfflineTest::OfflineTest() : fixture(readBytes(sourcePath("demo/stand-alone/SYSTEM.MDB"))) {
  needDriver(L"Microsoft Access Driver (*.mdb)");
  modMain.g_blnUseOfflineDB = true;
  setLocalTaloraDirectory(scratchPath(L"local"));
  install(fixture);
}

void OfflineTest::install(const std::string& bytes) {
  // Where a backslash is no separator, it is part of the file's name and the directory stays empty.
  makeDirectory(modMain.g_strLocalTaloraDir + L"\\OFFLINE");
  writeBytes(modMain.g_strOfflineDbPath, bytes);
}

void OfflineTest::connectOffline() {
  ASSERT_TRUE(ConnectToOfflineDatabase(config)) << ::testing::PrintToString(messages);
}

std::vector<CsvRow> OfflineTest::csvRows(const std::string& table) {
  std::istringstream text(readBytes(sourcePath("demo/stand-alone/SYSTEM.MDB.csv")));
  std::vector<CsvRow> rows;
  std::vector<std::optional<std::string>> columns;
  bool inTable = false;
  for (std::string line; std::getline(text, line);) {
    if (line.starts_with('[')) {
      inTable = line == "[" + table + "]";
      columns.clear();
    } else if (inTable && columns.empty()) {
      columns = cellsOf(line);
    } else if (inTable && !line.empty()) {
      const auto cells = cellsOf(line);
      CsvRow row;
      for (std::size_t i = 0; i < columns.size(); ++i) {
        row[*columns[i]] = cells.at(i) ? std::optional(fromUtf8(*cells[i])) : std::nullopt;
      }
      rows.push_back(std::move(row));
    }
  }
  return rows;
}

}  // namespace tlpacscfg::test
