#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "config/pacs_configuration.h"
#include "site/site.h"

/// What a writing command is going to change, as a value: it can be shown, compared, stored in a
/// file and applied later, in one transaction and only to the rows that it was made for.
namespace tlpacscfg {

/// The row before and after. Null: there is no such row, so the change inserts or deletes it.
struct ConfigurationChange {
  Site::Configuration before;
  Site::Configuration after;

  std::int16_t configID() const { return (before ? before : after)->configID; }
};

struct AssignmentChange {
  std::wstring workstation;
  /// As stored; "0" also when no row assigns a configuration.
  std::wstring before;
  std::int16_t after = 0;
};

/// A row that the plan does not change but counts on: a configuration that is assigned.
struct UnchangedRow {
  std::int16_t configID = 0;
  std::wstring digest;
};

struct Plan {
  std::vector<ConfigurationChange> configurations;  ///< By number.
  std::vector<AssignmentChange> assignments;        ///< By name.
  std::vector<UnchangedRow> restsOn;                ///< By number.

  std::size_t changes() const { return configurations.size() + assignments.size(); }
  bool deletes() const;
};

/// 16 hexadecimal digits over every stored field, for comparing a row with itself at another time.
std::wstring digestOf(const clsPACSConfiguration& record);

/// What the plan executes, in its order, each text as the component itself writes it; the mark for
/// offline copies is the last one.
std::vector<std::wstring> statementsOf(const Plan& plan);

}  // namespace tlpacscfg
