#pragma once

#include <cstdint>
#include <memory>
#include <optional>
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
  /// Of a row that is inserted or deleted: the workstations that are assigned its number although
  /// it does not exist. Nobody else may use a row that is deleted.
  std::vector<std::wstring> assignedWithoutRow;

  std::int16_t configID() const { return (before ? before : after)->configID; }
};

/// The texts of the assignment, as stored; null: no row.
struct AssignmentChange {
  std::wstring workstation;
  std::optional<std::wstring> before;
  std::optional<std::wstring> after;
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

/// Collects the changes of one command to a site. What would change nothing is left out.
class PlanMaker {
 public:
  explicit PlanMaker(const Site& site) : site_(site) {}

  /// One of the two may be null, as in ConfigurationChange.
  void store(const Site::Configuration& before, const Site::Configuration& after);
  void assign(const SiteWorkstation& workstation, std::optional<std::wstring> after);

  /// In order, with the rows that the plan counts on.
  Plan plan();

 private:
  void noteAssignmentsWithoutRow();

  const Site& site_;
  Plan plan_;
};

/// The plan that takes another one back.
Plan reversed(const Plan& plan, const Site& site);

/// 16 hexadecimal digits over every field that a user enters, without the last change: two rows
/// with one digest hold the same.
std::wstring digestOf(const clsPACSConfiguration& record);

/// The record whose saving statement stores the row after the change exactly: quotes in texts that
/// go into the statement as they stand are doubled.
clsPACSConfiguration recordToSend(const ConfigurationChange& change);

/// What the plan executes, in its order, each text as the component itself writes it; the mark for
/// offline copies is the last one.
std::vector<std::wstring> statementsOf(const Plan& plan);

}  // namespace tlpacscfg
