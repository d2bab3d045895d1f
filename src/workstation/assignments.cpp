#include "workstation/assignments.h"

#include <algorithm>
#include <optional>
#include <span>
#include <utility>

#include "data/data_path.h"
#include "data/mod_main.h"
#include "data/workstation_key.h"
#include "odbc/error.h"
#include "odbc/sql_tokens.h"
#include "support/conversions.h"
#include "support/text.h"
#include "workstation/assignment_batches.h"

namespace tlpacscfg {
namespace {

using Workstations = std::vector<colWorkstation::Pointer>;
using Assignments = std::unordered_map<std::wstring, std::wstring>;

/// Converted as a load converts it; null for a text that would fail the load.
std::optional<std::int16_t> configIDOf(const std::wstring& stored) {
  try {
    return assignedConfigID(stored);
  } catch (const RunTimeError&) {
    return std::nullopt;
  }
}

RunTimeError notSaved(const std::wstring& workstation, const std::wstring& reason) {
  return {odbc::kOdbcFailed, L"Workstation '" + workstation + L"': " + reason};
}

/// A single quote would end the name within the statement.
void checkNames(const Workstations& workstations) {
  for (const auto& workstation : workstations) {
    if (!hasUnpairedQuote(workstation->WorkStation)) continue;
    throw notSaved(workstation->WorkStation, L"Its name holds a single quote. Nothing was saved.");
  }
}

/// The text that somebody else stored for a workstation since it was loaded; empty when the
/// workstation is gone, null when nothing changed.
std::optional<std::wstring> foreignChange(clsWorkstation& workstation, const Assignments& stored) {
  if (!workstation.storedConfigID) return std::nullopt;
  const auto found = stored.find(workstation.WorkStation);
  if (found == stored.end()) return std::wstring();
  const auto unconfirmed = std::exchange(workstation.unconfirmedConfigID, std::nullopt);
  if (unconfirmed && configIDOf(found->second) == unconfirmed) {
    workstation.storedConfigID = unconfirmed;
  }
  if (configIDOf(found->second) == workstation.storedConfigID) return std::nullopt;
  return found->second;
}

/// Takes over what somebody else stored. False when that is no configuration; then nothing
/// changes.
bool takeOver(clsWorkstation& workstation, const std::wstring& theirs) {
  const auto configID = theirs.empty() ? std::nullopt : configIDOf(theirs);
  if (!configID) return false;
  workstation.configID = *configID;
  workstation.storedConfigID = *configID;
  return true;
}

struct Merge {
  Workstations toWrite;
  std::vector<AssignmentConflict> conflicts;
};

Merge merge(const colWorkstation& workstations, const Assignments& stored,
            const std::vector<AssignmentConflict>& overruled) {
  Merge merged;
  merged.toWrite.reserve(workstations.ColWorkStations->count());
  for (const auto& workstation : workstations.ColWorkStations->items()) {
    const std::optional<std::wstring> theirs = foreignChange(*workstation, stored);
    const bool mine = workstation->isReassigned();
    if (theirs && mine && configIDOf(*theirs) != workstation->configID) {
      AssignmentConflict conflict{workstation->WorkStation, workstation->configID, *theirs};
      const bool known = std::ranges::find(overruled, conflict) != overruled.end();
      if (!known) merged.conflicts.push_back(std::move(conflict));
    } else if (theirs && !mine && !takeOver(*workstation, *theirs)) {
      continue;
    }
    merged.toWrite.push_back(workstation);
  }
  return merged;
}

/// Throws unless each workstation that the database lists has the assignment that was written.
void checkWritten(const Workstations& workstations, const Assignments& stored) {
  for (const auto& workstation : workstations) {
    const auto found = stored.find(workstation->WorkStation);
    if (found == stored.end()) continue;
    if (configIDOf(found->second) == workstation->configID) continue;
    throw notSaved(workstation->WorkStation, L"The database keeps the configuration '" +
                                                 found->second + L"' instead of '" +
                                                 decimal(workstation->configID) + L"'.");
  }
}

void confirm(std::span<const colWorkstation::Pointer> workstations) {
  for (const auto& workstation : workstations) {
    workstation->storedConfigID = workstation->configID;
    workstation->unconfirmedConfigID.reset();
  }
}

void forgetUnconfirmed(std::span<const colWorkstation::Pointer> workstations) {
  for (const auto& workstation : workstations) workstation->unconfirmedConfigID.reset();
}

}  // namespace

std::unordered_map<std::wstring, std::wstring> storedAssignments(SiteCommand& command) {
  const Table rows = command.query(kListStatement);
  if (rows.rows() > 0 && rows.columns() <= kListFlag2) raise(ErrorNumber::SubscriptOutOfRange);
  Assignments stored;
  stored.reserve(rows.rows());
  for (std::size_t row = 0; row < rows.rows(); ++row) {
    const std::wstring_view name = rows.at(kListName, row).value_or(L"");
    stored.emplace(trimBlanks(name), rows.at(kListConfig, row).value_or(L"0"));
  }
  return stored;
}

bool isAssigned(SiteCommand& command, const colWorkstation& workstations, std::int16_t configID) {
  if (!command.reachesDatabase()) return workstations.CheckforAttachedWS(configID);
  Assignments stored = storedAssignments(command);
  for (const auto& workstation : workstations.ColWorkStations->items()) {
    if (workstation->storedConfigID && !workstation->isReassigned()) continue;
    if (workstation->configID == configID) return true;
    stored.erase(workstation->WorkStation);
  }
  return std::ranges::any_of(
      stored, [&](const auto& assignment) { return configIDOf(assignment.second) == configID; });
}

std::vector<AssignmentConflict> saveAssignments(
    const colWorkstation& workstations, const std::vector<AssignmentConflict>& overruled,
    const std::function<void(std::size_t done, std::size_t total)>& progress) {
  modMain.g_strWorkstationBatch.clear();
  if (!dataPath().executes()) return {};
  SiteCommand command;
  const Merge merged = merge(workstations, storedAssignments(command), overruled);
  if (!merged.conflicts.empty()) return merged.conflicts;
  checkNames(merged.toWrite);
  std::size_t written = 0;
  try {
    forEachAssignmentCommand(merged.toWrite, [&](const std::wstring& text, std::size_t done) {
      const std::span sent = std::span(merged.toWrite).subspan(written, done - written);
      for (const auto& workstation : sent) workstation->unconfirmedConfigID = workstation->configID;
      command.execute(text);
      // Without a transaction the command is stored already.
      if (!command.isTransaction()) confirm(sent);
      written = done;
      progress(done, merged.toWrite.size());
    });
    checkWritten(merged.toWrite, storedAssignments(command));
    command.markAndCommit();
  } catch (const OutcomeUnknown&) {
    throw;
  } catch (...) {
    // A transaction that is rolled back leaves nothing to be confirmed.
    if (command.isTransaction()) forgetUnconfirmed(merged.toWrite);
    throw;
  }
  confirm(merged.toWrite);
  return {};
}

void yieldTo(const AssignmentConflict& conflict, const colWorkstation& workstations) {
  const auto workstation = workstations.ColWorkStations->find(conflict.workstation);
  if (!workstation || takeOver(*workstation, conflict.theirs)) return;
  workstation->configID = workstation->storedConfigID.value_or(workstation->configID);
}

}  // namespace tlpacscfg
