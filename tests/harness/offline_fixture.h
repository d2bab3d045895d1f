#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "harness/core_fixture.h"

namespace tlpacscfg::test {

/// The cells of a row by column.
using CsvRow = std::map<std::string, std::optional<std::wstring>>;

/// Stand-alone mode with a copy of a real site's offline database in the local directory.
class OfflineTest : public CoreTest {
 protected:
  OfflineTest();

  /// Writes the bytes as the offline database, where its driver finds it.
  static void install(const std::string& bytes);

  void connectOffline();

  /// The content of the offline database.
  static std::vector<CsvRow> csvRows(const std::string& table);

  HostSettings config;
  std::string fixture;
};

}  // namespace tlpacscfg::test
