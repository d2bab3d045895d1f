#include "cli/commands/commands.h"
#include "cli/commands/loaded_site.h"
#include "cli/commands/selection.h"
#include "cli/connection/site_connection.h"
#include "cli/formats/fields.h"
#include "cli/formats/output.h"
#include "cli/program/context.h"
#include "config/columns.h"
#include "site/site.h"
#include "support/text.h"

namespace tlpacscfg::cli {
namespace {

class Find : public Command {
 public:
  CommandHelp help() const override {
    return {.name = "find",
            .summary = "Find a text in every field and name of the site",
            .examples =
                "  tlpacscfg --site main find nas01\n"
                "  tlpacscfg --site main find 'https://*.example.org' --csv\n"};
  }

  std::vector<Option> options() override {
    return {{.names = "TEXT",
             .value = "",
             .help = "Whatever its letter case; * and ? stand for letters",
             .target = &text_,
             .required = true}};
  }

  ExitCode run(Context& context) override {
    const Site site = onSite(context.connection, loadSite);
    const std::wstring pattern = L"*" + fromUtf8(text_) + L"*";
    Listing found{
        .kind = "found",
        .columns = {{"kind", "Kind"}, {"name", "Name"}, {"field", "Field"}, {"value", "Value"}},
        .rows = {}};
    for (const auto& record : site.configurations) {
      for (const Column& column : columns()) {
        const std::string value = wordsOf(column, *record);
        if (!fits(fromUtf8(value), pattern)) continue;
        found.rows.push_back(
            {"configuration", std::to_string(record->configID), toUtf8(column.property), value});
      }
    }
    for (const SiteWorkstation& workstation : site.workstations) {
      if (!fits(workstation.name, pattern)) continue;
      const std::string name = toUtf8(workstation.name);
      found.rows.push_back({"workstation", name, "name", name});
    }
    write(found, context.output, "Nothing is found.");
    return reportUnreadable(site) ? ExitCode::Findings : ExitCode::Done;
  }

 private:
  std::string text_;
};

}  // namespace

std::unique_ptr<Command> findCommand() { return std::make_unique<Find>(); }

}  // namespace tlpacscfg::cli
