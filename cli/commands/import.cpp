
#include "cli/base/console.h"
#include "cli/base/failure.h"
#include "cli/commands/change.h"
#include "cli/commands/commands.h"
#include "cli/commands/site_names.h"
#include "cli/formats/site_folder.h"
#include "support/text.h"

namespace tlpacscfg::cli {
namespace {

/// What to do with a row that the site has otherwise than the folder.
enum class OnConflict { Stop, Skip, Update };

class Merge {
 public:
  Merge(const Site& site, OnConflict onConflict)
      : site_(site), names_(site), maker_(site), onConflict_(onConflict) {}

  Plan plan(const Site& folder) {
    for (const auto& record : folder.configurations) {
      const Site::Configuration stored = site_.find(record->configID);
      const bool differs = stored && digestOf(*stored) != digestOf(*record);
      if (differs && !mayReplace("Configuration " + std::to_string(record->configID))) continue;
      maker_.store(stored, record);
    }
    for (const SiteWorkstation& workstation : folder.workstations) addAssignment(workstation);
    if (!conflicts_.empty()) {
      throw Failure(ExitCode::Conflict,
                    "The site has other rows than the folder. Nothing was changed. Use "
                    "--on-conflict skip or update." +
                        conflicts_);
    }
    return maker_.plan();
  }

 private:
  bool mayReplace(const std::string& row) {
    if (onConflict_ == OnConflict::Stop) conflicts_ += "\n" + row + " is another one in the site.";
    return onConflict_ == OnConflict::Update;
  }

  void addAssignment(const SiteWorkstation& workstation) {
    const std::string name = toUtf8(workstation.name);
    const SiteWorkstation* const stored = names_.workstation(name);
    if (stored == nullptr) {
      const std::string text = "There is no workstation " + name + " in the site.";
      if (onConflict_ == OnConflict::Stop) {
        conflicts_ += "\n" + text;
      } else {
        say("tlpacscfg: " + text);
      }
      return;
    }
    const bool isFree = stored->configID == std::int16_t{0};
    const bool same = stored->assigned == workstation.assigned ||
                      (stored->configID && stored->configID == workstation.configID);
    if (same || (!isFree && !mayReplace("Workstation " + name))) return;
    maker_.assign(*stored, workstation.assigned);
  }

  const Site& site_;
  SiteNames names_;
  PlanMaker maker_;
  OnConflict onConflict_;
  std::string conflicts_;
};

class Import : public Command {
 public:
  CommandHelp help() const override {
    return {.name = "import",
            .summary = "Store what a folder that 'export' wrote has in the site",
            .examples =
                "  tlpacscfg --site main import site-main --dry-run\n"
                "  tlpacscfg --site main import site-main --on-conflict update --yes\n"};
  }

  std::vector<Option> options() override {
    return optionsOf(change_, {{.names = "DIR",
                                .value = "",
                                .help = "The folder. What it does not have stays in the site",
                                .target = &directory_,
                                .required = true},
                               {.names = "--on-conflict",
                                .value = "ACTION",
                                .help = "What to do with rows that the site has otherwise: stop, "
                                        "which is the default, skip or update",
                                .target = &onConflict_,
                                .choices = {"stop", "skip", "update"}}});
  }

  ExitCode run(Context& context) override {
    const Site folder = readSiteFolder(directory_);
    const OnConflict onConflict = onConflict_ == "skip"     ? OnConflict::Skip
                                  : onConflict_ == "update" ? OnConflict::Update
                                                            : OnConflict::Stop;
    return runChange(context, change_, {.command = "import"},
                     [&](const Site& site, const auto&, Change&) {
                       return Merge(site, onConflict).plan(folder);
                     });
  }

 private:
  std::string directory_;
  std::string onConflict_ = "stop";
  ChangeOptions change_;
};

}  // namespace

std::unique_ptr<Command> importCommand() { return std::make_unique<Import>(); }

}  // namespace tlpacscfg::cli
