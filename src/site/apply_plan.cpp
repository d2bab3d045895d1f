#include "site/apply_plan.h"

#include <algorithm>
#include <set>
#include <unordered_map>
#include <utility>

#include "config/row_reading.h"
#include "config/stored_configuration.h"
#include "data/site_command.h"
#include "odbc/error.h"
#include "support/conversions.h"
#include "support/text.h"

namespace tlpacscfg {
namespace {

/// The rows that a plan is about, as they are stored.
struct StoredRows {
  std::unordered_map<std::int16_t, Configuration> configurations;
  std::unordered_map<std::wstring, SiteWorkstation> workstations;  ///< By folded name.

  Configuration configuration(std::int16_t configID) const {
    const auto found = configurations.find(configID);
    return found == configurations.end() ? nullptr : found->second;
  }
  const SiteWorkstation* workstation(const std::wstring& name) const {
    const auto found = workstations.find(upperCase(name));
    return found == workstations.end() ? nullptr : &found->second;
  }
};

std::unordered_map<std::int16_t, Configuration> readConfigurations(
    SiteCommand& command, const std::set<std::int16_t>& numbers) {
  // More than a few are read with one query.
  constexpr std::size_t kMaxQueries = 8;
  std::unordered_map<std::int16_t, Configuration> found;
  if (numbers.size() <= kMaxQueries) {
    for (const std::int16_t configID : numbers) {
      if (auto record = storedConfiguration(command, configID)) found[configID] = std::move(record);
    }
    return found;
  }
  const Table rows = command.query(loadingStatement());
  if (rows.rows() > 0 && rows.columns() < kColumnCount) raise(ErrorNumber::SubscriptOutOfRange);
  for (std::size_t row = 0; row < rows.rows(); ++row) {
    const Cell number = rows.at(0, row);
    if (!number || !isNumeric(*number) || !numbers.contains(toInt16(*number))) continue;
    auto record = recordOfRow([&](std::size_t column) { return rows.at(column, row); },
                              dataPath().cellRules());
    const std::int16_t configID = record->configID;
    if (!found.try_emplace(configID, std::move(record)).second) raise(ErrorNumber::DuplicateKey);
  }
  return found;
}

enum class Rows { Changed, ChangedAndCountedOn };

StoredRows readRows(SiteCommand& command, const Plan& plan, Rows rows) {
  std::set<std::int16_t> numbers;
  for (const ConfigurationChange& change : plan.configurations) numbers.insert(change.configID());
  if (rows == Rows::ChangedAndCountedOn) {
    for (const UnchangedRow& row : plan.restsOn) numbers.insert(row.configID);
  }
  StoredRows stored{.configurations = readConfigurations(command, numbers), .workstations = {}};
  if (plan.assignments.empty() && !plan.deletes()) return stored;
  for (SiteWorkstation& workstation : readWorkstations()) {
    std::wstring key = upperCase(workstation.name);
    stored.workstations.try_emplace(std::move(key), std::move(workstation));
  }
  return stored;
}

bool holdsSame(const Site::Configuration& first, const Site::Configuration& second) {
  return first && second ? digestOf(*first) == digestOf(*second) : !first && !second;
}

bool isAssigned(const SiteWorkstation* workstation, const std::optional<std::wstring>& text) {
  return workstation != nullptr && isSameAssignment(workstation->assigned, text);
}

/// The workstations that use a row which the plan deletes, and of which the plan does not know.
void addUses(const Plan& plan, const StoredRows& stored, ForeignChanges& foreign) {
  std::unordered_map<std::int16_t, const ConfigurationChange*> deleted;
  for (const ConfigurationChange& change : plan.configurations) {
    if (!change.after) deleted.emplace(change.configID(), &change);
  }
  if (deleted.empty()) return;
  std::set<std::wstring> reassigned;
  for (const AssignmentChange& change : plan.assignments) reassigned.insert(change.workstation);
  for (const auto& [key, workstation] : stored.workstations) {
    const auto used = deleted.find(workstation.configID.value_or(0));
    if (used == deleted.end() || reassigned.contains(workstation.name)) continue;
    if (std::ranges::count(used->second->assignedWithoutRow, workstation.name) > 0) continue;
    foreign.assignments.push_back({.workstation = workstation.name,
                                   .expected = {},
                                   .stored = workstation.assigned,
                                   .uses = used->first});
  }
}

ForeignChanges compare(const Plan& plan, const StoredRows& stored) {
  ForeignChanges foreign;
  for (const ConfigurationChange& change : plan.configurations) {
    const auto now = stored.configuration(change.configID());
    if (!holdsSame(change.before, now)) {
      foreign.configurations.push_back({change.configID(), change.before, now});
    }
  }
  for (const UnchangedRow& row : plan.restsOn) {
    const auto now = stored.configuration(row.configID);
    if (!now || digestOf(*now) != row.digest) {
      foreign.configurations.push_back({row.configID, nullptr, now});
    }
  }
  for (const AssignmentChange& change : plan.assignments) {
    const SiteWorkstation* const now = stored.workstation(change.workstation);
    if (isAssigned(now, change.before)) continue;
    foreign.assignments.push_back({.workstation = change.workstation,
                                   .expected = change.before,
                                   .stored = now != nullptr ? now->assigned : std::nullopt,
                                   .isGone = now == nullptr});
  }
  addUses(plan, stored, foreign);
  return foreign;
}

RunTimeError notStored(const SiteCommand& command, const std::wstring& reason) {
  return {odbc::kOdbcFailed,
          std::wstring(command.isTransaction() ? L"Nothing was saved. " : L"") + reason};
}

/// Throws unless every row is as the statements left it.
void requireWritten(const SiteCommand& command, const Plan& plan, const StoredRows& stored) {
  for (const ConfigurationChange& change : plan.configurations) {
    const Configuration now = stored.configuration(change.configID());
    const std::wstring name = L"Configuration " + decimal(change.configID());
    if (!change.after) {
      if (now) throw notStored(command, name + L" is still in the database.");
      continue;
    }
    if (!now) throw notStored(command, name + L" is not in the database.");
    requireStoredAsSent(command, recordToSend(change), now);
  }
  for (const AssignmentChange& change : plan.assignments) {
    const SiteWorkstation* const now = stored.workstation(change.workstation);
    if (isAssigned(now, change.after)) continue;
    throw notStored(command, L"Workstation '" + change.workstation +
                                 L"' does not keep the configuration '" +
                                 change.after.value_or(L"0") + L"'.");
  }
}

/// The plan with what is stored instead of what was sent. A row that is gone is no part of it.
Plan asStored(Plan plan, const StoredRows& stored) {
  for (ConfigurationChange& change : plan.configurations) {
    change.after = stored.configuration(change.configID());
  }
  std::erase_if(plan.configurations,
                [](const ConfigurationChange& change) { return !change.before && !change.after; });
  std::erase_if(plan.assignments, [&](AssignmentChange& change) {
    const SiteWorkstation* const now = stored.workstation(change.workstation);
    if (now != nullptr) change.after = now->assigned;
    return now == nullptr;
  });
  return plan;
}

/// A plan that holds nothing to compare would be applied to any site.
void requireDatabase(const SiteCommand& command) {
  if (command.reachesDatabase()) return;
  throw RunTimeError(odbc::kOdbcFailed, L"The local file of a workstation is only read.");
}

/// No database has it, so a statement that names it fails, and its request is undone as a whole.
constexpr const wchar_t* kNoTable = L"tlpacscfg_undo_this_dry_run";

/// A dry run without a transaction of its own. Throws when a statement of the plan fails.
void tryOut(SiteCommand& command, const Plan& plan) {
  try {
    command.execute(requestOf(plan) + L"DELETE FROM " + kNoTable);
  } catch (const RunTimeError& error) {
    if (error.description().find(kNoTable) != std::wstring::npos) return;
    throw;
  }
  throw RunTimeError(odbc::kOdbcFailed, L"The database did not undo the dry run.");
}

}  // namespace

std::wstring requestOf(const Plan& plan) {
  std::wstring text;
  for (const std::wstring& statement : statementsOf(plan)) {
    text += statement;
    text += kLineBreak;
    text += kLineBreak;
  }
  return text;
}

ForeignChanges applyPlan(const Plan& plan, Ending ending,
                         const std::function<void()>& beforeCommit) {
  SiteCommand command;
  requireDatabase(command);
  ForeignChanges foreign = compare(plan, readRows(command, plan, Rows::ChangedAndCountedOn));
  if (foreign.any()) return foreign;
  if (command.isTransaction()) {
    std::vector<std::wstring> statements = statementsOf(plan);
    statements.pop_back();
    for (const std::wstring& statement : statements) command.execute(statement);
    requireWritten(command, plan, readRows(command, plan, Rows::Changed));
    if (ending == Ending::RollBack) return {};
    beforeCommit();
    command.markAndCommit();
    return {};
  }
  if (ending == Ending::RollBack) {
    tryOut(command, plan);
    return compare(plan, readRows(command, plan, Rows::ChangedAndCountedOn));
  }
  beforeCommit();
  command.execute(requestOf(plan));
  const StoredRows stored = readRows(command, plan, Rows::Changed);
  try {
    requireWritten(command, plan, stored);
  } catch (const RunTimeError& error) {
    throw StoredOtherwise(error, asStored(plan, stored));
  }
  return {};
}

Outcome outcomeOf(const Plan& plan) {
  SiteCommand command;
  const StoredRows stored = readRows(command, plan, Rows::Changed);
  bool someAsBefore = false, someAsAfter = false;
  for (const ConfigurationChange& change : plan.configurations) {
    const auto now = stored.configuration(change.configID());
    someAsBefore = someAsBefore || holdsSame(change.before, now);
    someAsAfter = someAsAfter || holdsSame(change.after, now);
  }
  for (const AssignmentChange& change : plan.assignments) {
    const SiteWorkstation* const now = stored.workstation(change.workstation);
    someAsBefore = someAsBefore || isAssigned(now, change.before);
    someAsAfter = someAsAfter || isAssigned(now, change.after);
  }
  if (someAsBefore == someAsAfter) return Outcome::Unknown;
  return someAsAfter ? Outcome::Stored : Outcome::NotStored;
}

}  // namespace tlpacscfg
