#include "cli/commands/change.h"
#include "cli/commands/commands.h"
#include "cli/formats/plan_file.h"

namespace tlpacscfg::cli {
namespace {

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
    std::vector<Option> table = applyingOptionsOf(change_);
    table.insert(table.begin(), {.names = "FILE",
                                 .value = "",
                                 .help = "What another command wrote with --plan",
                                 .target = &file_,
                                 .required = true});
    return table;
  }

  ExitCode run(Context& context) override {
    Plan plan = readPlanFile(file_);
    return runChange(context, change_, {.command = "apply"},
                     [&](const Site&, const auto&, Change&) { return plan; });
  }

 private:
  std::string file_;
  ChangeOptions change_;
};

}  // namespace

std::unique_ptr<Command> applyCommand() { return std::make_unique<Apply>(); }

}  // namespace tlpacscfg::cli
