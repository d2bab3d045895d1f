#include "cli/commands/records.h"

#include <algorithm>
#include <map>
#include <set>
#include <tuple>
#include <utility>

#include "cli/base/failure.h"
#include "cli/commands/site_check.h"
#include "cli/formats/fields.h"
#include "config/columns.h"
#include "support/text.h"
#include "ui/settings/values/default_configuration.h"

namespace tlpacscfg::cli {
namespace {

/// The configurations of the site after the plan; nothing else of it.
Site configurationsAfter(const Site& site, const Plan& plan) {
  std::map<std::int16_t, const ConfigurationChange*> changes;
  for (const ConfigurationChange& change : plan.configurations) {
    changes.emplace(change.configID(), &change);
  }
  Site after;
  for (const auto& record : site.configurations) {
    if (!changes.contains(record->configID)) after.configurations.push_back(record);
  }
  for (const ConfigurationChange& change : plan.configurations) {
    if (change.after) after.configurations.push_back(change.after);
  }
  std::ranges::stable_sort(after.configurations, {},
                           [](const auto& record) { return record->configID; });
  return after;
}

/// What would keep the window from saving a configuration: its number, the field, which is empty
/// when it is about several, and the message.
using SavingError = std::tuple<std::wstring, std::wstring, std::wstring>;

std::set<SavingError> errorsOf(const std::vector<Site::Configuration>& records, const Site& site) {
  std::set<SavingError> errors;
  for (const Finding& finding : findingsAbout(records, site, std::nullopt)) {
    if (finding.severity != Severity::Error) continue;
    errors.insert({*finding.configuration, finding.field, finding.message});
  }
  return errors;
}

/// What the plan leaves as it was, although the window would complain.
std::set<SavingError> keptErrors(const Site& site, const Plan& plan) {
  std::vector<Site::Configuration> before;
  std::set<std::pair<std::wstring, std::wstring>> kept;
  for (const ConfigurationChange& change : plan.configurations) {
    if (!change.before || !change.after) continue;
    before.push_back(change.before);
    for (const Column& column : columns()) {
      if (valueOf(*change.before, column.field) != valueOf(*change.after, column.field)) continue;
      kept.emplace(decimal(change.configID()), column.property);
    }
  }
  std::set<SavingError> errors = errorsOf(before, site);
  std::erase_if(errors, [&](const SavingError& error) {
    const auto& [number, field, message] = error;
    return !kept.contains({number, field});
  });
  return errors;
}

void requireDefaultName(const Plan& plan) {
  for (const ConfigurationChange& change : plan.configurations) {
    if (!change.before || !change.after || mayRename(change.configID())) continue;
    if (change.before->Description == change.after->Description) continue;
    throw Failure(ExitCode::Usage, "The description of the default configuration, " +
                                       std::to_string(change.configID()) +
                                       ", cannot be changed. Nothing was changed.");
  }
}

}  // namespace

Site::Configuration withValues(const clsPACSConfiguration& record,
                               const std::vector<std::string>& values) {
  auto changed = std::make_shared<clsPACSConfiguration>(record);
  for (const std::string& value : values) {
    const std::size_t equals = value.find('=');
    if (equals == std::string::npos) {
      throw Failure(ExitCode::Usage, "'" + value + "' is no FIELD=VALUE.");
    }
    const Column& column = columnNamed(value.substr(0, equals));
    if (!column.isContent()) {
      throw Failure(ExitCode::Usage, toUtf8(column.property) + " cannot be set.");
    }
    setValue(*changed, column.field, valueIn(column, value.substr(equals + 1)));
  }
  return changed;
}

void requireRules(const Site& site, const Plan& plan) {
  requireDefaultName(plan);
  std::vector<Site::Configuration> after;
  for (const ConfigurationChange& change : plan.configurations) {
    if (change.after) after.push_back(change.after);
  }
  const std::set<SavingError> kept = keptErrors(site, plan);
  std::string text;
  for (const SavingError& error : errorsOf(after, configurationsAfter(site, plan))) {
    if (kept.contains(error)) continue;
    const auto& [number, field, message] = error;
    text += "\nConfiguration " + toUtf8(number) + ": " + toUtf8(message);
  }
  if (!text.empty()) {
    throw Failure(ExitCode::Usage, "The rules do not allow this. Nothing was changed." + text);
  }
}

}  // namespace tlpacscfg::cli
