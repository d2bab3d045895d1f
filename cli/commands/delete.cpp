#include <algorithm>

#include "cli/base/failure.h"
#include "cli/commands/change.h"
#include "cli/commands/commands.h"
#include "cli/commands/records.h"
#include "cli/commands/selection.h"
#include "support/text.h"
#include "ui/settings/values/default_configuration.h"

namespace tlpacscfg::cli {
namespace {

/// Like the window, which lists the configurations without those that only stand for none.
void requireNoDefault(const Site& site, const std::vector<Site::Configuration>& records) {
  const auto numberOf = [](const Site::Configuration& record) { return record->configID; };
  const auto listed = std::ranges::upper_bound(site.configurations, 0, {}, numberOf);
  for (const auto& record : records) {
    if (record->configID <= 0) continue;
    const auto place =
        std::ranges::lower_bound(listed, site.configurations.end(), record->configID, {}, numberOf);
    if (mayDelete(static_cast<std::size_t>(place - listed))) continue;
    throw Failure(ExitCode::Usage, "Nothing was deleted. " + toUtf8(kNotDeletable));
  }
}

/// Like the window, which deletes no configuration that a workstation uses.
void requireUnused(const Site& site, const std::vector<Site::Configuration>& records) {
  std::string text;
  for (const auto& record : records) {
    for (const SiteWorkstation& workstation : site.workstations) {
      if (workstation.configID != record->configID) continue;
      text += "\nWorkstation " + toUtf8(workstation.name) + " uses configuration " +
              std::to_string(record->configID) + ".";
    }
  }
  if (!text.empty()) throw Failure(ExitCode::Usage, "Nothing was deleted." + text);
}

class Delete : public Command {
 public:
  CommandHelp help() const override {
    return {.name = "delete",
            .summary = "Delete configurations that no workstation uses, but not the first one",
            .examples =
                "  tlpacscfg --site main delete 12 --yes\n"
                "  tlpacscfg --site main delete 'Test*' --dry-run\n"};
  }

  std::vector<Option> options() override {
    return optionsOf(change_, {{.names = "CONFIGURATION",
                                .value = "",
                                .help = "A number, a description or a pattern",
                                .target = &names_},
                               {"--where", "FIELD=VALUE",
                                "Only configurations with this value; may be repeated", &where_}});
  }

  ExitCode run(Context& context) override {
    return runChange(context, change_, {.command = "delete"},
                     [&](const Site& site, const auto&, Change&) {
                       const auto records = selectConfigurations(site, names_, where_);
                       requireNoDefault(site, records);
                       requireUnused(site, records);
                       PlanMaker maker(site);
                       for (const auto& record : records) maker.store(record, nullptr);
                       return maker.plan();
                     });
  }

 private:
  std::vector<std::string> names_;
  std::vector<std::string> where_;
  ChangeOptions change_;
};

}  // namespace

std::unique_ptr<Command> deleteCommand() { return std::make_unique<Delete>(); }

}  // namespace tlpacscfg::cli
