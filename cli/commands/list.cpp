#include <algorithm>
#include <unordered_map>

#include "cli/base/failure.h"
#include "cli/commands/commands.h"
#include "cli/commands/loaded_site.h"
#include "cli/commands/selection.h"
#include "cli/commands/site_names.h"
#include "cli/connection/site_connection.h"
#include "cli/formats/fields.h"
#include "cli/formats/output.h"
#include "cli/program/context.h"
#include "site/site.h"
#include "support/text.h"

namespace tlpacscfg::cli {
namespace {

class List : public Command {
 public:
  CommandHelp help() const override {
    return {.name = "list",
            .summary = "List configurations or workstations",
            .examples =
                "  tlpacscfg --site main list\n"
                "  tlpacscfg --site main list workstations --name 'READ-*'\n"
                "  tlpacscfg --site main list workstations --configuration none\n"
                "  tlpacscfg --site main list --where 'PACSType=COM - Broker' --csv\n"};
  }

  std::vector<Option> options() override {
    return {
        {.names = "KIND",
         .value = "",
         .help = "configurations, which is the default, or workstations",
         .target = &kind_,
         .choices = {"configurations", "workstations"}},
        {"--name", "PATTERN", "Of the workstation, or the description; * and ? stand for letters",
         &name_},
        {"--configuration", "CONFIGURATION",
         "Workstations with this one: a number, a description, or none", &configuration_},
        {"--where", "FIELD=VALUE", "Configurations with this value; may be repeated", &where_},
    };
  }

  ExitCode run(Context& context) override {
    requireFittingFilters();
    const Site site = onSite(context.connection, loadSite);
    write(kind_ == "workstations" ? workstations(site) : configurations(site), context.output,
          "Nothing is listed.");
    return reportUnreadable(site) ? ExitCode::Findings : ExitCode::Done;
  }

 private:
  void requireFittingFilters() const {
    const bool ofWorkstations = kind_ == "workstations";
    if (ofWorkstations ? where_.empty() : configuration_.empty()) return;
    throw Failure(ExitCode::Usage, ofWorkstations
                                       ? "--where is for configurations, not for workstations."
                                       : "--configuration is for 'list workstations'.");
  }

  bool hasName(std::wstring_view text) const {
    return name_.empty() || fits(text, fromUtf8(name_));
  }

  Listing workstations(const Site& site) const {
    std::optional<std::int16_t> wanted;
    if (!configuration_.empty()) {
      wanted = configuration_ == "none" ? std::int16_t{0}
                                        : SiteNames(site).require(configuration_)->configID;
    }
    std::vector<const SiteWorkstation*> listed;
    for (const SiteWorkstation& workstation : site.workstations) {
      if (wanted && workstation.configID != wanted) continue;
      if (hasName(workstation.name)) listed.push_back(&workstation);
    }
    return listingOf(site, listed);
  }

  Listing configurations(const Site& site) const {
    const std::vector<FieldFilter> filters(where_.begin(), where_.end());
    std::unordered_map<std::int16_t, std::int64_t> uses;
    for (const SiteWorkstation& workstation : site.workstations) {
      if (workstation.configID) ++uses[*workstation.configID];
    }
    Listing listing{.kind = "configurations",
                    .columns = {{"configID", "Number"},
                                {"Description", "Description"},
                                {"PACSType", "Vendor format"},
                                {"workstations", "Workstations"},
                                {"LastUpdateDate", "Last change"},
                                {"LastUpdateUserID", "by"}},
                    .rows = {}};
    const Column& format = columnNamed("PACSType");
    for (const auto& record : site.configurations) {
      const bool accepted = std::ranges::all_of(
          filters, [&](const FieldFilter& filter) { return filter.accepts(*record); });
      if (!accepted || !hasName(record->Description)) continue;
      listing.add(std::int64_t{record->configID}, toUtf8(record->Description),
                  wordsOf(format, *record), uses[record->configID], toUtf8(record->LastUpdateDate),
                  toUtf8(record->LastUpdateUserID));
    }
    return listing;
  }

  std::string kind_ = "configurations";
  std::string name_;
  std::string configuration_;
  std::vector<std::string> where_;
};

}  // namespace

std::unique_ptr<Command> listCommand() { return std::make_unique<List>(); }

}  // namespace tlpacscfg::cli
