#include <unordered_map>

#include "cli/base/console.h"
#include "cli/base/failure.h"
#include "cli/commands/change.h"
#include "cli/commands/commands.h"
#include "cli/commands/site_names.h"
#include "cli/formats/assignments_csv.h"
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

  Plan plan(const SiteFolder& folder) {
    for (const auto& record : folder.site.configurations) {
      const Site::Configuration stored = site_.find(record->configID);
      const bool differs = site_.isUnreadable(record->configID) ||
                           (stored && digestOf(*stored) != digestOf(*record));
      if (differs && !mayReplace("Configuration " + std::to_string(record->configID))) continue;
      maker_.store(stored, record);
    }
    for (std::size_t i = 0; i < folder.lines.size(); ++i) {
      addAssignment(folder.site.workstations[i], folder.lines[i]);
    }
    if (!errors_.empty()) throw Failure(ExitCode::Usage, "Nothing was changed." + errors_);
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

  void addError(std::size_t line, const std::string& message) {
    errors_ += "\n" + std::string(kAssignmentsFile) + ":" + std::to_string(line) + ": " + message;
  }

  void addAssignment(const SiteWorkstation& workstation, std::size_t line) {
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
    const auto [earlier, isNew] = lines_.try_emplace(stored, line);
    if (!isNew) return addError(line, namedTwice(name, earlier->second));
    if (stored->assigned == workstation.assigned) return;
    if (!workstation.configID) {
      return addError(line,
                      "'" + toUtf8(*workstation.assigned) + "' is no number of a configuration.");
    }
    if (stored->configID == workstation.configID) return;
    const bool isFree = stored->configID == std::int16_t{0};
    if (!isFree && !mayReplace("Workstation " + name)) return;
    maker_.assign(*stored, workstation.assigned);
  }

  const Site& site_;
  SiteNames names_;
  PlanMaker maker_;
  OnConflict onConflict_;
  std::string conflicts_;
  std::string errors_;
  std::unordered_map<const SiteWorkstation*, std::size_t> lines_;
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
    const SiteFolder folder = readSiteFolder(directory_);
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
