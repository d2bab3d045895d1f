#pragma once

#include <string>
#include <vector>

namespace tlpacscfg::cli {

/// What ODBC offers to programs of one kind. On Windows there are two kinds, with lists of their
/// own.
struct InstalledDrivers {
  std::string programs;  ///< "64-bit programs"; "programs" where there is one kind.
  std::vector<std::string> drivers;
  std::vector<std::string> dataSources;
};

std::vector<InstalledDrivers> installedDrivers();

}  // namespace tlpacscfg::cli
