#include "cli/commands/selection.h"

#include <algorithm>

#include "cli/base/console.h"
#include "cli/base/failure.h"
#include "cli/base/progress.h"
#include "cli/formats/fields.h"
#include "config/columns.h"
#include "support/text.h"

namespace tlpacscfg::cli {
namespace {

bool fitsFolded(std::wstring_view text, std::wstring_view pattern) {
  // Where to go on when a star has to stand for one letter more.
  std::size_t star = pattern.npos, textAtStar = 0;
  std::size_t at = 0, inPattern = 0;
  while (at < text.size()) {
    const bool more = inPattern < pattern.size();
    if (more && pattern[inPattern] == L'*') {
      star = inPattern++;
      textAtStar = at;
    } else if (more && (pattern[inPattern] == L'?' || pattern[inPattern] == text[at])) {
      ++inPattern;
      ++at;
    } else if (star != pattern.npos) {
      inPattern = star + 1;
      at = ++textAtStar;
    } else {
      return false;
    }
  }
  return pattern.find_first_not_of(L'*', inPattern) == pattern.npos;
}

}  // namespace

bool isPattern(std::string_view word) { return word.find_first_of("*?") != std::string_view::npos; }

bool fits(std::wstring_view text, std::wstring_view pattern) {
  return fitsFolded(upperCase(text), upperCase(pattern));
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

Listing listingOf(const Site& site, const std::vector<const SiteWorkstation*>& workstations) {
  Listing listing{.kind = "workstations",
                  .columns = {{"workstation", "Workstation"},
                              {"configuration", "Number"},
                              {"description", "Configuration"}},
                  .rows = {}};
  listing.rows.reserve(workstations.size());
  for (const SiteWorkstation* const workstation : workstations) {
    const auto configID = workstation->configID;
    Value number, description;
    if (!configID) {
      number = toUtf8(*workstation->assigned);
      description = "(not a number)";
    } else if (*configID != 0) {
      number = std::int64_t{*configID};
      const auto record = site.find(*configID);
      description = record ? toUtf8(record->Description) : "(does not exist)";
    }
    listing.add(toUtf8(workstation->name), std::move(number), std::move(description));
  }
  return listing;
}

Site loadSite() {
  const Progress progress("Reading the site");
  return readSite();
}

bool reportUnreadable(const Site& site) {
  for (const UnreadableConfiguration& row : site.unreadable) {
    say("tlpacscfg: configuration " + toUtf8(row.configID) +
        " cannot be read: " + toUtf8(row.error.description()));
  }
  return !site.unreadable.empty();
}

}  // namespace tlpacscfg::cli
