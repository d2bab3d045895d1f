#include "site/plan.h"

#include <algorithm>
#include <map>
#include <set>
#include <utility>

#include "config/columns.h"
#include "config/pacs_configurations.h"
#include "data/statements.h"
#include "data/workstation_key.h"
#include "support/text.h"
#include "workstation/assignment_batches.h"

namespace tlpacscfg {
namespace {

/// FNV-1a.
class Hash {
 public:
  void addField(const std::wstring& text) { addBytes(toUtf8(trimTrailingBlanks(text))); }
  void addField(std::int32_t number) { addBytes(std::to_string(number)); }

  std::wstring digits() const {
    std::wstring text;
    for (int shift = 60; shift >= 0; shift -= 4) {
      text += L"0123456789abcdef"[(value_ >> shift) & 0xFU];
    }
    return text;
  }

 private:
  /// A zero byte ends each field.
  void addBytes(const std::string& bytes) {
    for (std::size_t i = 0; i <= bytes.size(); ++i) {
      value_ = (value_ ^ static_cast<unsigned char>(bytes[i])) * 0x100000001B3U;
    }
  }

  std::uint64_t value_ = 0xCBF29CE484222325U;
};

}  // namespace

bool Plan::deletes() const {
  return std::ranges::any_of(configurations, [](const auto& change) { return !change.after; });
}

void PlanMaker::store(const Site::Configuration& before, const Site::Configuration& after) {
  if (before && after && digestOf(*before) == digestOf(*after)) return;
  plan_.configurations.push_back({before, after, {}});
}

void PlanMaker::assign(const SiteWorkstation& workstation, std::optional<std::wstring> after) {
  if (isSameAssignment(workstation.assigned, after)) return;
  plan_.assignments.push_back({workstation.name, workstation.assigned, std::move(after)});
}

void PlanMaker::noteAssignmentsWithoutRow() {
  std::map<std::int16_t, ConfigurationChange*> changes;
  for (ConfigurationChange& change : plan_.configurations) {
    if (!change.before || !change.after) changes.emplace(change.configID(), &change);
  }
  std::set<std::wstring> reassigned;
  for (const AssignmentChange& change : plan_.assignments) reassigned.insert(change.workstation);
  for (const SiteWorkstation& workstation : site_.workstations) {
    const auto change = changes.find(workstation.configID.value_or(0));
    if (change == changes.end() || reassigned.contains(workstation.name)) continue;
    change->second->assignedWithoutRow.push_back(workstation.name);
  }
}

Plan PlanMaker::plan() {
  std::ranges::sort(plan_.configurations, {}, &ConfigurationChange::configID);
  std::ranges::sort(plan_.assignments, {}, &AssignmentChange::workstation);
  noteAssignmentsWithoutRow();
  std::set<std::int16_t> assigned;
  for (const AssignmentChange& change : plan_.assignments) {
    assigned.insert(configIDIn(change.after).value_or(0));
  }
  for (const ConfigurationChange& change : plan_.configurations) assigned.erase(change.configID());
  for (const std::int16_t configID : assigned) {
    const Site::Configuration record = site_.find(configID);
    if (record) plan_.restsOn.push_back({configID, digestOf(*record)});
  }
  return std::move(plan_);
}

Plan reversed(const Plan& plan, const Site& site) {
  PlanMaker undo(site);
  Plan backwards;
  for (const ConfigurationChange& change : plan.configurations) {
    backwards.configurations.push_back({change.after, change.before, change.assignedWithoutRow});
  }
  for (const AssignmentChange& change : plan.assignments) {
    SiteWorkstation workstation;
    workstation.name = change.workstation;
    workstation.assigned = change.after;
    undo.assign(workstation, change.before);
  }
  Plan assignments = undo.plan();
  backwards.assignments = std::move(assignments.assignments);
  backwards.restsOn = std::move(assignments.restsOn);
  std::erase_if(backwards.restsOn, [&](const UnchangedRow& row) {
    return std::ranges::find(backwards.configurations, row.configID,
                             &ConfigurationChange::configID) != backwards.configurations.end();
  });
  return backwards;
}

std::wstring digestOf(const clsPACSConfiguration& record) {
  Hash hash;
  for (const Column& column : columns()) {
    if (!column.isContent()) continue;
    std::visit([&](auto member) { hash.addField(record.*member); }, column.field);
  }
  return hash.digits();
}

clsPACSConfiguration recordToSend(const ConfigurationChange& change) {
  clsPACSConfiguration record = *change.after;
  record.ExistingConfig = change.before ? kTrue : kFalse;
  for (const Column& column : columns()) {
    if (column.quoting != Quoting::AsItStands) continue;
    setValue(record, column.field, FixQuotes(textOf(valueOf(record, column.field))));
  }
  return record;
}

std::vector<std::wstring> statementsOf(const Plan& plan) {
  std::vector<std::wstring> statements;
  for (const ConfigurationChange& change : plan.configurations) {
    statements.push_back(change.after ? recordToSend(change).savingStatement()
                                      : deletingStatement(change.configID()));
  }
  std::vector<std::wstring> names;
  names.reserve(plan.assignments.size());
  std::vector<Assignment> assignments;
  assignments.reserve(plan.assignments.size());
  for (const AssignmentChange& change : plan.assignments) {
    names.push_back(FixQuotes(change.workstation));
    assignments.push_back({names.back(), change.after});
  }
  forEachAssignmentCommand(
      assignments, [&](const std::wstring& text, std::size_t) { statements.push_back(text); });
  statements.emplace_back(kOfflineUpdateStatement);
  return statements;
}

}  // namespace tlpacscfg
