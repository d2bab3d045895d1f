#include "cli/formats/changes.h"

#include "cli/formats/fields.h"
#include "config/columns.h"
#include "support/text.h"

namespace tlpacscfg::cli {
namespace {

std::string nameOf(const clsPACSConfiguration& record) {
  return std::to_string(record.configID) + " " + toUtf8(record.Description);
}

/// What an assignment means: "none", "7 Reading room", or why that cannot be said.
std::string nameOf(const std::optional<std::wstring>& assigned, const Plan* plan,
                   const Site* site) {
  const auto configID = configIDIn(assigned);
  if (!configID) return "'" + toUtf8(*assigned) + "' (not a number)";
  if (*configID == 0) return "none";
  if (plan != nullptr) {
    for (const ConfigurationChange& change : plan->configurations) {
      if (change.configID() == *configID && change.after) return nameOf(*change.after);
    }
  }
  if (site == nullptr) return std::to_string(*configID);
  const Site::Configuration record = site->find(*configID);
  return record ? nameOf(*record) : std::to_string(*configID) + " (does not exist)";
}

void addFields(const ConfigurationChange& change, Listing& listing) {
  const std::string name = nameOf(change.before ? *change.before : *change.after);
  const auto add = [&](Value field, Value before, Value after) {
    listing.add("configuration", name, std::move(field), std::move(before), std::move(after));
  };
  if (!change.before) return add({}, std::string("(does not exist)"), std::string("(new)"));
  if (!change.after) return add({}, std::string("(exists)"), std::string("(deleted)"));
  for (const Column& column : columns()) {
    if (!column.isContent()) continue;
    std::string before = wordsOf(column, *change.before), after = wordsOf(column, *change.after);
    if (valueOf(*change.before, column.field) == valueOf(*change.after, column.field)) continue;
    add(toUtf8(column.property), std::move(before), std::move(after));
  }
}

std::string counted(std::size_t count, const std::string& what) {
  return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

/// Who stored the row last, as the row itself says.
std::string lastChange(const clsPACSConfiguration& record) {
  return "by user " + toUtf8(trimBlanks(record.LastUpdateUserID)) + " on " +
         toUtf8(record.LastUpdateDate);
}

std::string lineOf(const ForeignConfiguration& foreign) {
  const std::string name = "Configuration " + std::to_string(foreign.configID);
  if (!foreign.stored) return name + " was deleted.";
  const std::string who = lastChange(*foreign.stored);
  if (!foreign.expected) {
    return name + " ('" + toUtf8(foreign.stored->Description) + "') was stored " + who + ".";
  }
  std::string text = name + " was changed " + who + ":";
  for (const Column& column : columns()) {
    if (!column.isContent()) continue;
    const std::string was = wordsOf(column, *foreign.expected);
    const std::string is = wordsOf(column, *foreign.stored);
    if (was == is) continue;
    text.append("\n  ").append(toUtf8(column.property));
    text.append(" was '").append(was).append("' and is '").append(is).append("'.");
  }
  return text;
}

std::string lineOf(const ForeignAssignment& foreign, const Site* site) {
  const std::string name = "Workstation " + toUtf8(foreign.workstation);
  if (foreign.isGone) return name + " is gone.";
  if (foreign.uses != 0) {
    return name + " uses configuration " + std::to_string(foreign.uses) +
           ", which is to be deleted.";
  }
  return name + " had the configuration " + nameOf(foreign.expected, nullptr, site) + " and has " +
         nameOf(foreign.stored, nullptr, site) + ". The database does not say who changed it.";
}

}  // namespace

Listing listingOf(const Plan& plan, const Site* site) {
  Listing listing{.kind = "changes",
                  .columns = {{"kind", "Kind"},
                              {"name", "Name"},
                              {"field", "Field"},
                              {"before", "Before"},
                              {"after", "After"}},
                  .rows = {}};
  for (const ConfigurationChange& change : plan.configurations) addFields(change, listing);
  for (const AssignmentChange& change : plan.assignments) {
    listing.add("workstation", toUtf8(change.workstation), "configuration",
                nameOf(change.before, nullptr, site), nameOf(change.after, &plan, site));
  }
  return listing;
}

std::string countOf(const Plan& plan) {
  const std::size_t workstations = plan.assignments.size();
  const std::size_t configurations = plan.configurations.size();
  if (configurations == 0) return counted(workstations, "workstation");
  const std::string text = counted(configurations, "configuration");
  return workstations == 0 ? text : counted(workstations, "workstation") + " and " + text;
}

std::string textOf(const ForeignChanges& foreign, const Site* site) {
  std::string text;
  for (const ForeignConfiguration& row : foreign.configurations) text += "\n" + lineOf(row);
  for (const ForeignAssignment& row : foreign.assignments) text += "\n" + lineOf(row, site);
  return text;
}

}  // namespace tlpacscfg::cli
