#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "site/site.h"

namespace tlpacscfg::cli {

enum class Severity {
  Error,    ///< Something does not work, or cannot be loaded or saved.
  Warning,  ///< The settings window would change it when somebody saves the configuration.
};

/// The rule of a finding: two configurations of one workstation listen on one port.
inline constexpr const char* kPortUsedTwice = "port-used-twice";

struct Finding {
  Severity severity = Severity::Error;
  const char* rule = "";
  std::optional<std::wstring> configuration;  ///< Its number as stored.
  std::optional<std::wstring> workstation;
  std::wstring field;  ///< The property; empty when the finding is about the whole row.
  std::wstring message;
};

/// Whether the configuration makes a workstation listen on a port.
bool listens(const clsPACSConfiguration& record);

/// What the settings window would say about these configurations of the site. `xmlFiles` are the
/// names of the site's mapping files; null when they are not known.
std::vector<Finding> findingsAbout(const std::vector<Site::Configuration>& records,
                                   const Site& site,
                                   const std::optional<std::vector<std::wstring>>& xmlFiles);

/// The same about all of them, and what no window sees.
std::vector<Finding> findingsIn(const Site& site, const std::vector<StoredAssignment>& assignments,
                                const std::optional<std::vector<std::wstring>>& xmlFiles);

}  // namespace tlpacscfg::cli
