#include <algorithm>

#include "cli/base/console.h"
#include "cli/commands/commands.h"
#include "cli/commands/loaded_site.h"
#include "cli/connection/site_connection.h"
#include "cli/formats/site_folder.h"
#include "cli/program/context.h"
#include "site/site.h"

namespace tlpacscfg::cli {
namespace {

class Export : public Command {
 public:
  CommandHelp help() const override {
    return {.name = "export",
            .summary = "Write the site to a folder of readable files",
            .examples = "  tlpacscfg --site main export site-main\n"};
  }

  std::vector<Option> options() override {
    return {{.names = "DIR",
             .value = "",
             .help =
                 "The folder: a file a configuration, and assignments.csv. Files of "
                 "configurations that are gone are removed; that of one that cannot be read stays",
             .target = &directory_,
             .required = true}};
  }

  ExitCode run(Context& context) override {
    const Site site = onSite(context.connection, loadSite);
    bool complete = !reportUnreadable(site);
    const auto twice = std::ranges::adjacent_find(
        site.configurations, {}, [](const auto& record) { return record->configID; });
    if (twice != site.configurations.end()) {
      say("tlpacscfg: configuration " + std::to_string((*twice)->configID) +
          " is stored twice; the folder has one of them.");
      complete = false;
    }
    writeSiteFolder(site, directory_);
    return complete ? ExitCode::Done : ExitCode::Findings;
  }

 private:
  std::string directory_;
};

}  // namespace

std::unique_ptr<Command> exportCommand() { return std::make_unique<Export>(); }

}  // namespace tlpacscfg::cli
