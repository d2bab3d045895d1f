#include "cli/commands/selection.h"

#include <algorithm>
#include <set>

#include "cli/base/failure.h"
#include "cli/commands/site_names.h"
#include "cli/formats/fields.h"
#include "config/columns.h"
#include "support/pattern.h"
#include "support/text.h"

namespace tlpacscfg::cli {
namespace {

void select(const Site& site, const SiteNames& names, const std::string& word,
            std::set<Site::Configuration>& selected) {
  if (!isPattern(word) || names.find(word)) {
    selected.insert(names.require(word));
    return;
  }
  bool fitsAny = false;
  for (const auto& record : site.configurations) {
    if (!fits(record->Description, fromUtf8(word))) continue;
    selected.insert(record);
    fitsAny = true;
  }
  if (!fitsAny) {
    throw Failure(ExitCode::Usage, "No configuration fits the pattern '" + word + "'.");
  }
}

}  // namespace

bool isPattern(std::string_view word) { return word.find_first_of("*?") != std::string_view::npos; }

bool fits(std::wstring_view text, std::wstring_view pattern) {
  return matchesPattern(upperCase(text), upperCase(pattern));
}

FieldFilter::FieldFilter(const std::string& condition)
    : column_(columnNamed(condition.substr(0, condition.find('=')))) {
  const std::size_t equals = condition.find('=');
  if (equals == condition.npos) {
    throw Failure(ExitCode::Usage, "'" + condition + "' is not a condition. Write FIELD=VALUE.");
  }
  const std::string value = condition.substr(equals + 1);
  if (isText(column_.field)) {
    pattern_ = fromUtf8(value);
  } else {
    value_ = valueIn(column_, value);
  }
}

bool FieldFilter::accepts(const clsPACSConfiguration& record) const {
  const FieldValue value = valueOf(record, column_.field);
  const auto* const text = std::get_if<std::wstring>(&value);
  return text != nullptr ? fits(*text, pattern_) : value == value_;
}

std::vector<const SiteWorkstation*> selectWorkstations(const Site& site,
                                                       const std::vector<std::string>& words) {
  const SiteNames names(site);
  std::set<const SiteWorkstation*> selected;
  for (const std::string& word : words) {
    bool fitsAny = false;
    if (const SiteWorkstation* const named = names.workstation(word)) {
      selected.insert(named);
      continue;
    }
    for (const SiteWorkstation& workstation : site.workstations) {
      if (!isPattern(word) || !fits(workstation.name, fromUtf8(word))) continue;
      selected.insert(&workstation);
      fitsAny = true;
    }
    if (fitsAny) continue;
    throw Failure(ExitCode::Usage,
                  isPattern(word)
                      ? "No workstation fits the pattern '" + word + "'."
                      : "There is no workstation '" + word + "'." + names.suggestWorkstation(word));
  }
  std::vector<const SiteWorkstation*> inOrder;
  for (const SiteWorkstation& workstation : site.workstations) {
    if (words.empty() || selected.contains(&workstation)) inOrder.push_back(&workstation);
  }
  return inOrder;
}

std::vector<Site::Configuration> selectConfigurations(const Site& site,
                                                      const std::vector<std::string>& words,
                                                      const std::vector<std::string>& conditions) {
  if (words.empty() && conditions.empty()) {
    throw Failure(ExitCode::Usage, "No configuration is named. Nothing was changed.");
  }
  std::set<Site::Configuration> selected;
  const SiteNames names(site);
  for (const std::string& word : words) select(site, names, word, selected);
  const std::vector<FieldFilter> filters(conditions.begin(), conditions.end());
  std::vector<Site::Configuration> records;
  for (const auto& record : site.configurations) {
    if (!words.empty() && !selected.contains(record)) continue;
    const bool accepted = std::ranges::all_of(
        filters, [&](const FieldFilter& filter) { return filter.accepts(*record); });
    if (accepted) records.push_back(record);
  }
  if (records.empty()) throw Failure(ExitCode::Usage, "No configuration fits.");
  return records;
}

}  // namespace tlpacscfg::cli
