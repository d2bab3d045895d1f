#include <filesystem>

#include "cli/base/console.h"
#include "cli/base/failure.h"
#include "cli/base/process.h"
#include "cli/commands/change.h"
#include "cli/commands/commands.h"
#include "cli/commands/records.h"
#include "cli/commands/site_names.h"
#include "cli/formats/configuration_text.h"
#include "cli/formats/files.h"

namespace tlpacscfg::cli {
namespace {

/// In the user's editor. A text that cannot be used stays in its file.
Site::Configuration edited(const clsPACSConfiguration& record) {
  const std::filesystem::path file = std::filesystem::temp_directory_path() /
                                     pathOf("tlpacscfg-" + std::to_string(processId()) + ".txt");
  writeFile(file, textOf(record));
  const std::string name = utf8Of(file);
  const std::string editor =
      environmentValue("VISUAL").value_or(environmentValue("EDITOR").value_or(""));
  if (editor.empty()) throw Failure(ExitCode::Usage, "Set EDITOR to the editor to use.");
  if (runCommandLine(editor + " \"" + name + "\"") != 0) {
    throw Failure(ExitCode::Usage, "The editor failed. Nothing was changed.");
  }
  ConfigurationText text = readConfigurationText(readFile(name));
  std::string errors;
  for (const TextError& error : text.errors) {
    errors += "\n" + name + ":" + std::to_string(error.line) + ": " + error.message;
  }
  if (text.errors.empty() && text.record.configID != record.configID) {
    errors = "\nThe number cannot be changed; 'copy' makes a configuration with a new one.";
  }
  if (!errors.empty()) throw Failure(ExitCode::Usage, "Nothing was changed." + errors);
  std::error_code ignored;
  std::filesystem::remove(file, ignored);
  text.record.LastUpdateUserID = record.LastUpdateUserID;
  text.record.LastUpdateDate = record.LastUpdateDate;
  return std::make_shared<clsPACSConfiguration>(std::move(text.record));
}

class Edit : public Command {
 public:
  CommandHelp help() const override {
    return {.name = "edit",
            .summary = "Change a configuration as a text in your editor",
            .examples =
                "  tlpacscfg --site main edit 7\n"
                "  tlpacscfg --site main edit 7 --plan seven.plan\n"};
  }

  std::vector<Option> options() override {
    return optionsOf(change_, {{.names = "CONFIGURATION",
                                .value = "",
                                .help = "Its number or description",
                                .target = &name_,
                                .required = true}});
  }

  ExitCode run(Context& context) override {
    return runChange(context, change_, {.command = "edit"},
                     [&](const Site& site, const auto&, Change&) {
                       const auto record = SiteNames(site).require(name_);
                       PlanMaker maker(site);
                       maker.store(record, edited(*record));
                       Plan plan = maker.plan();
                       requireRules(site, plan);
                       return plan;
                     });
  }

 private:
  std::string name_;
  ChangeOptions change_;
};

}  // namespace

std::unique_ptr<Command> editCommand() { return std::make_unique<Edit>(); }

}  // namespace tlpacscfg::cli
