#pragma once

#include <string>

#include "site/site.h"

/// A site as a folder: configuration-00007.txt for each configuration, and assignments.csv.
namespace tlpacscfg::cli {

/// Writes what is new or changed, and removes the files of configurations that are gone; other
/// files stay. Throws Failure.
void writeSiteFolder(const Site& site, const std::string& directory);

/// Throws Failure, which names every error with its file and line.
Site readSiteFolder(const std::string& directory);

}  // namespace tlpacscfg::cli
