#include <algorithm>

#include "cli/base/failure.h"
#include "cli/commands/change.h"
#include "cli/commands/commands.h"
#include "cli/commands/records.h"
#include "cli/commands/site_names.h"
#include "support/text.h"

namespace tlpacscfg::cli {
namespace {

class Copy : public Command {
 public:
  CommandHelp help() const override {
    return {.name = "copy",
            .summary = "Store a copy of a configuration under a new number and description",
            .examples =
                "  tlpacscfg --site main copy 7 'Custom map, second CT'\n"
                "  tlpacscfg --site main copy 5 'Second listener' Port=10001 --number 20\n"};
  }

  std::vector<Option> options() override {
    return optionsOf(change_, {{.names = "CONFIGURATION",
                                .value = "",
                                .help = "Its number or description",
                                .target = &original_,
                                .required = true},
                               {.names = "DESCRIPTION",
                                .value = "",
                                .help = "Of the copy",
                                .target = &description_,
                                .required = true},
                               {.names = "VALUE",
                                .value = "",
                                .help = "FIELD=VALUE, what is different in the copy",
                                .target = &values_},
                               {"--number", "NUMBER", "The next free one when it is not given",
                                Number{&number_, 1, INT16_MAX}}});
  }

  ExitCode run(Context& context) override {
    return runChange(context, change_, {.command = "copy"},
                     [&](const Site& site, const auto&, Change&) { return planFor(site); });
  }

 private:
  Plan planFor(const Site& site) const {
    clsPACSConfiguration copy = *SiteNames(site).require(original_);
    copy.configID = newNumber(site);
    copy.Description = fromUtf8(description_);
    copy.LastUpdateUserID = savingUser();
    PlanMaker maker(site);
    maker.store(nullptr, withValues(copy, values_));
    Plan plan = maker.plan();
    requireRules(site, plan);
    return plan;
  }

  std::int16_t newNumber(const Site& site) const {
    std::int64_t number = number_;
    if (number == 0) {
      const auto& records = site.configurations;
      number = records.empty() ? 1 : std::max<std::int64_t>(records.back()->configID, 0) + 1;
      while (number <= INT16_MAX && site.isUnreadable(static_cast<std::int16_t>(number))) ++number;
    }
    if (number > INT16_MAX) {
      throw Failure(ExitCode::Usage, std::to_string(number) + " is no number of a configuration.");
    }
    const auto configID = static_cast<std::int16_t>(number);
    if (site.find(configID) || site.isUnreadable(configID)) {
      throw Failure(ExitCode::Usage, "There is a configuration " + std::to_string(number) + ".");
    }
    return configID;
  }

  std::string original_;
  std::string description_;
  std::vector<std::string> values_;
  int number_ = 0;
  ChangeOptions change_;
};

}  // namespace

std::unique_ptr<Command> copyCommand() { return std::make_unique<Copy>(); }

}  // namespace tlpacscfg::cli
