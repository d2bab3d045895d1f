#include "cli/commands/commands.h"
#include "cli/commands/loaded_site.h"
#include "cli/commands/site_names.h"
#include "cli/connection/site_connection.h"
#include "cli/program/context.h"
#include "site/site.h"
#include "support/text.h"

namespace tlpacscfg::cli {
namespace {

class WhereUsed : public Command {
 public:
  CommandHelp help() const override {
    return {.name = "where-used",
            .summary = "List the workstations that use a configuration",
            .examples =
                "  tlpacscfg --site main where-used 7\n"
                "  tlpacscfg --site main where-used 'Broker (old)' --csv\n"};
  }

  std::vector<Option> options() override {
    return {{.names = "CONFIGURATION",
             .value = "",
             .help = "A number, also of a configuration that no longer exists, or a description",
             .target = &configuration_,
             .required = true}};
  }

  ExitCode run(Context& context) override {
    const Site site = onSite(context.connection, loadSite);
    const SiteNames names(site);
    const auto record = names.find(configuration_);
    const std::wstring assigned = record ? decimal(record->configID) : fromUtf8(configuration_);
    std::vector<const SiteWorkstation*> users;
    for (const SiteWorkstation& workstation : site.workstations) {
      if (isSameAssignment(workstation.assigned, assigned)) users.push_back(&workstation);
    }
    if (!record && users.empty()) {
      names.requireReadable(configuration_);
      reportUnreadable(site);
      names.require(configuration_);
    }
    write(listingOf(site, users), context.output, "No workstation uses it.");
    return ExitCode::Done;
  }

 private:
  std::string configuration_;
};

}  // namespace

std::unique_ptr<Command> whereUsedCommand() { return std::make_unique<WhereUsed>(); }

}  // namespace tlpacscfg::cli
