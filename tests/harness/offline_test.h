#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "harness/core_test.h"

namespace tlpacscfg::test {

/// The cells of a row by column.
using CsvRow = std::map<std::string, std::optional<std::wstring>>;

/// Stand-alone mode with a copy of a real site's offline database in the local directory.
class OfflineTest : public CoreTest {
 protected:
  OfflineTest();

  /// Puts the bytes where the offline database lies and where its driver looks for it.
  static void install(const std::string& bytes);

  void connectOffline();

  /// What the offline database holds.
  static std::vector<CsvRow> csvRows(const std::string& table);

  HostSettings config;
  std::string fixture;
};

}  // namespace tlpacscfg::test
