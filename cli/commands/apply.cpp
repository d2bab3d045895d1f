#include <algorithm>

#include "cli/commands/change.h"
#include "cli/commands/commands.h"
#include "cli/formats/plan_file.h"

namespace tlpacscfg::cli {
namespace {

/// Whether the plan takes back the change of its number in this journal. Another computer's journal
/// may have another change under that number.
bool takesBack(const PlanFile& file, const Site& site, const std::vector<JournalEntry>& entries) {
  const auto entry = std::ranges::find(entries, file.undoes, &JournalEntry::number);
  if (entry == entries.end() || isUndone(entries, file.undoes)) return false;
  return changeTheSame(reversed(entry->plan, site), file.plan);
}

class Apply : public Command {
 public:
  CommandHelp help() const override {
    return {.name = "apply",
            .summary = "Apply the plan of a file, if nobody changed its rows meanwhile",
            .examples =
                "  tlpacscfg --site main assign --csv moves.csv --plan moves.plan\n"
                "  tlpacscfg --site main apply moves.plan\n"};
  }

  std::vector<Option> options() override {
    return applyingOptionsOf(change_, {{.names = "FILE",
                                        .value = "",
                                        .help = "What another command wrote with --plan",
                                        .target = &file_,
                                        .required = true}});
  }

  ExitCode run(Context& context) override {
    const PlanFile file = readPlanFile(file_);
    return runChange(context, change_, {.command = "apply"},
                     [&](const Site& site, const auto& entries, Change& change) {
                       if (takesBack(file, site, entries)) change = undoOf(file.undoes);
                       return file.plan;
                     });
  }

 private:
  std::string file_;
  ChangeOptions change_;
};

}  // namespace

std::unique_ptr<Command> applyCommand() { return std::make_unique<Apply>(); }

}  // namespace tlpacscfg::cli
