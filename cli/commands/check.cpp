#include <utility>
#include <vector>

#include "cli/base/progress.h"
#include "cli/commands/commands.h"
#include "cli/commands/site_check.h"
#include "cli/connection/site_connection.h"
#include "cli/formats/output.h"
#include "cli/program/context.h"
#include "site/site.h"
#include "support/text.h"
#include "ui/settings/values/settings_files.h"

namespace tlpacscfg::cli {
namespace {

Value valueOf(const std::optional<std::wstring>& text) {
  return text ? Value(toUtf8(*text)) : Value();
}

std::pair<Site, std::vector<StoredAssignment>> loadStored() {
  const Progress progress("Reading the site");
  std::vector<StoredAssignment> assignments = readStoredAssignments();
  Site site = readSiteByTables(assignments);
  return {std::move(site), std::move(assignments)};
}

class Check : public Command {
 public:
  CommandHelp help() const override {
    return {.name = "check",
            .summary = "Check every stored row: rules, validation, assignments, files",
            .examples =
                "  tlpacscfg --site main check\n"
                "  tlpacscfg --site main check --errors --json\n"
                "  tlpacscfg --site main check --root /mnt/site\n"};
  }

  std::vector<Option> options() override {
    return {{"--errors", "", "Leave out warnings: what the window would change when it saves",
             &errorsOnly_}};
  }

  ExitCode run(Context& context) override {
    const std::vector<Finding> findings = onSite(context.connection, [] {
      const auto [site, assignments] = loadStored();
      std::optional<std::vector<std::wstring>> files;
      if (knowsPromptFiles()) files = promptXmlFiles();
      return findingsIn(site, assignments, files);
    });
    Listing listing{.kind = "findings",
                    .columns = {{"severity", "Severity"},
                                {"rule", "Rule"},
                                {"configuration", "Number"},
                                {"workstation", "Workstation"},
                                {"field", "Field"},
                                {"message", "Finding"}},
                    .rows = {}};
    for (const Finding& finding : findings) {
      const bool isError = finding.severity == Severity::Error;
      if (errorsOnly_ && !isError) continue;
      listing.add(isError ? "error" : "warning", finding.rule, valueOf(finding.configuration),
                  valueOf(finding.workstation),
                  finding.field.empty() ? Value() : toUtf8(finding.field), toUtf8(finding.message));
    }
    write(listing, context.output, "Nothing is wrong.");
    return listing.rows.empty() ? ExitCode::Done : ExitCode::Findings;
  }

 private:
  bool errorsOnly_ = false;
};

}  // namespace

std::unique_ptr<Command> checkCommand() { return std::make_unique<Check>(); }

}  // namespace tlpacscfg::cli
