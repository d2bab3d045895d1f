#include "cli/base/failure.h"
#include "cli/commands/change.h"
#include "cli/commands/commands.h"
#include "cli/commands/records.h"
#include "cli/commands/selection.h"

namespace tlpacscfg::cli {
namespace {

class Set : public Command {
 public:
  CommandHelp help() const override {
    return {
        .name = "set",
        .summary = "Change fields of configurations",
        .examples =
            "  tlpacscfg --site main set 5 Port=10001\n"
            "  tlpacscfg --site main set 'CT*' DeleteFlag=yes --dry-run\n"
            "  tlpacscfg --site main set --where 'PACSType=Standard - XML' BiDirectional=yes\n"};
  }

  std::vector<Option> options() override {
    return optionsOf(
        change_, {{.names = "WORD",
                   .value = "",
                   .help = "A number, a description or a pattern, and FIELD=VALUE for each field",
                   .target = &words_,
                   .required = true},
                  {"--where", "FIELD=VALUE", "Only configurations with this value; may be repeated",
                   &where_}});
  }

  ExitCode run(Context& context) override {
    std::vector<std::string> names, values;
    for (const std::string& word : words_) {
      (word.find('=') == std::string::npos ? names : values).push_back(word);
    }
    if (values.empty()) throw Failure(ExitCode::Usage, "Write FIELD=VALUE for what to set.");
    return runChange(context, change_, {.command = "set"},
                     [&](const Site& site, const auto&, Change&) {
                       PlanMaker maker(site);
                       for (const auto& record : selectConfigurations(site, names, where_)) {
                         maker.store(record, withValues(*record, values));
                       }
                       Plan plan = maker.plan();
                       requireRules(site, plan);
                       return plan;
                     });
  }

 private:
  std::vector<std::string> words_;
  std::vector<std::string> where_;
  ChangeOptions change_;
};

}  // namespace

std::unique_ptr<Command> setCommand() { return std::make_unique<Set>(); }

}  // namespace tlpacscfg::cli
