#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "config/pacs_configuration.h"
#include "support/runtime_error.h"

/// The site as it is stored, for tools that look at all of it. Unlike a load of the windows, a row
/// that cannot be read does not end the reading, and no row is lost because of its key.
namespace tlpacscfg {

struct UnreadableConfiguration {
  std::wstring configID;  ///< As stored; "Null" for none.
  RunTimeError error;
};

struct SiteWorkstation {
  std::wstring name;
  /// As stored; null when no row assigns a configuration.
  std::optional<std::wstring> assigned;
  /// 0: none. Null for a text that is no number of a configuration.
  std::optional<std::int16_t> configID;
  std::optional<std::int16_t> flag2;  ///< Null when it is not a number.
};

struct Site {
  using Configuration = std::shared_ptr<const clsPACSConfiguration>;

  std::vector<Configuration> configurations;  ///< By number.
  std::vector<UnreadableConfiguration> unreadable;
  std::vector<SiteWorkstation> workstations;  ///< In the order of the source.

  /// The first with the number; null when there is none.
  Configuration find(std::int16_t configID) const;
  /// Whether a row with the number cannot be read.
  bool isUnreadable(std::int16_t configID) const;
};

/// The configuration that the text assigns: 0 for none, and for no text. Null for a text that is no
/// number of a configuration.
std::optional<std::int16_t> configIDIn(const std::optional<std::wstring>& assigned);

/// Whether two texts assign the same; none is none, with a row or without one. Texts that are no
/// numbers must be equal.
bool isSameAssignment(const std::optional<std::wstring>& first,
                      const std::optional<std::wstring>& second);

/// What a workstation's row of the key for configurations holds.
struct StoredAssignment {
  std::wstring workstation;
  std::optional<std::wstring> assigned;
};

// These read through the data path that is open, or from the local file in stand-alone mode. They
// throw RunTimeError when the database does not answer.

Site readSite();

/// By the component's own query, which stand-alone mode does not have.
std::vector<SiteWorkstation> readWorkstations();

/// Every row, also of workstations that are not listed, and each of several for one workstation.
std::vector<StoredAssignment> readStoredAssignments();

/// The same site, from the two tables of workstations one by one: it can be read also where
/// several rows assign configurations to one workstation, which the component's query does not
/// bear. The first of them counts.
Site readSiteByTables(const std::vector<StoredAssignment>& assignments);

}  // namespace tlpacscfg
