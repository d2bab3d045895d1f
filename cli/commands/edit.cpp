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
#include "cli/formats/private_folder.h"

namespace tlpacscfg::cli {
namespace {

/// The command line of the user's editor. Throws Failure.
std::string chosenEditor() {
  for (const char* const variable : {"VISUAL", "EDITOR"}) {
    std::string editor = environmentValue(variable).value_or("");
    if (!editor.empty()) return editor;
  }
  throw Failure(ExitCode::Usage, "Set EDITOR to the editor to use.");
}

/// What the editor left in the file. Throws Failure.
Site::Configuration recordIn(const std::string& file, const clsPACSConfiguration& before) {
  ConfigurationText text = readConfigurationText(readFile(file));
  std::string errors;
  for (const TextError& error : text.errors) {
    errors += "\n" + file + ":" + std::to_string(error.line) + ": " + error.message;
  }
  if (text.errors.empty() && text.record.configID != before.configID) {
    errors = "\nThe number cannot be changed; 'copy' makes a configuration with a new one.";
  }
  if (!errors.empty()) throw Failure(ExitCode::Usage, "Nothing was changed." + errors);
  text.record.LastUpdateUserID = before.LastUpdateUserID;
  text.record.LastUpdateDate = before.LastUpdateDate;
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
    const std::string editor = chosenEditor();
    try {
      const ExitCode code = runChange(context, change_, {.command = "edit"},
                                      [&](const Site& site, const auto&, Change&) {
                                        const auto record = SiteNames(site).require(name_);
                                        PlanMaker maker(site);
                                        maker.store(record, edited(*record, editor));
                                        Plan plan = maker.plan();
                                        requireRules(site, plan);
                                        return plan;
                                      });
      std::error_code ignored;
      std::filesystem::remove_all(folder_, ignored);
      return code;
    } catch (const Failure& failure) {
      if (file_.empty()) throw;
      throw Failure(failure.code(),
                    std::string(failure.what()) + "\nThe edited text is in '" + file_ + "'.");
    }
  }

 private:
  Site::Configuration edited(const clsPACSConfiguration& record, const std::string& editor) {
    folder_ = makePrivateFolder();
    const auto file = folder_ / ("configuration-" + std::to_string(record.configID) + ".txt");
    writeFile(file, textOf(record));
    file_ = utf8Of(file);
    if (runCommandLine(editor + " \"" + file_ + "\"") != 0) {
      throw Failure(ExitCode::Usage, "The editor failed. Nothing was changed.");
    }
    return recordIn(file_, record);
  }

  std::string name_;
  ChangeOptions change_;
  /// For the text alone, as editors write backups beside it.
  std::filesystem::path folder_;
  /// The text, once it is there to be edited.
  std::string file_;
};

}  // namespace

std::unique_ptr<Command> editCommand() { return std::make_unique<Edit>(); }

}  // namespace tlpacscfg::cli
