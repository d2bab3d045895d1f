#include "cli/commands/loaded_site.h"

#include <utility>

#include "cli/base/console.h"
#include "cli/base/progress.h"
#include "support/text.h"

namespace tlpacscfg::cli {

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

}  // namespace tlpacscfg::cli
