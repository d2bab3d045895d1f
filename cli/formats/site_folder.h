#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "site/site.h"

/// A site as a folder: configuration-00007.txt for each configuration, and assignments.csv.
namespace tlpacscfg::cli {

/// Writes what is new or changed, and removes the files of configurations that are gone; other
/// files stay, also those of configurations that cannot be read. Throws Failure.
void writeSiteFolder(const Site& site, const std::string& directory);

struct SiteFolder {
  Site site;
  std::vector<std::size_t> lines;  ///< Of each workstation in the file of assignments.
};

inline constexpr const char* kAssignmentsFile = "assignments.csv";

/// Throws Failure, which names every error with its file and line. What a site may hold can be
/// read, also an assignment that is no number.
SiteFolder readSiteFolder(const std::string& directory);

}  // namespace tlpacscfg::cli
