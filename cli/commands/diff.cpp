#include <algorithm>
#include <filesystem>
#include <map>
#include <utility>

#include "cli/base/failure.h"
#include "cli/commands/commands.h"
#include "cli/commands/loaded_site.h"
#include "cli/commands/site_names.h"
#include "cli/connection/site_connection.h"
#include "cli/formats/changes.h"
#include "cli/formats/fields.h"
#include "cli/formats/files.h"
#include "cli/formats/output.h"
#include "cli/formats/plan_file.h"
#include "cli/formats/site_folder.h"
#include "cli/program/context.h"
#include "config/columns.h"
#include "site/site.h"
#include "support/text.h"

namespace tlpacscfg::cli {
namespace {

constexpr std::string_view kSitePrefix = "site:";

bool isFolder(const std::string& word) {
  std::error_code ignored;
  return std::filesystem::is_directory(pathOf(word), ignored);
}

bool isWholeSite(const std::string& word) {
  return word.starts_with(kSitePrefix) || isFolder(word);
}

class Diff : public Command {
 public:
  CommandHelp help() const override {
    return {.name = "diff",
            .summary = "Compare two configurations or two sites, or show a plan, field by field",
            .examples =
                "  tlpacscfg --site main diff 2 7\n"
                "  tlpacscfg --site main diff site-main site:main\n"
                "  tlpacscfg diff site:main site:annex --json\n"
                "  tlpacscfg diff moves.plan\n"};
  }

  std::vector<Option> options() override {
    return {
        {.names = "A",
         .value = "",
         .help = "A configuration's number or description; a folder of export; site:NAME; or, "
                 "alone, a file of --plan",
         .target = &first_,
         .required = true},
        {.names = "B", .value = "", .help = "The same", .target = &second_},
        {"--last-change", "", "Compare also who made the last change, and when", &withLastChange_}};
  }

  ExitCode run(Context& context) override {
    if (second_.empty()) return showPlan(context);
    if (isWholeSite(first_) != isWholeSite(second_)) {
      throw Failure(ExitCode::Usage,
                    "Compare two configurations, or two of folders and site:NAME.");
    }
    if (isWholeSite(first_)) {
      const Site before = siteOf(context, first_);
      compareSites(before, siteOf(context, second_));
    } else {
      const Site site = onSite(context.connection, loadSite);
      const SiteNames names(site);
      const auto before = names.require(first_);
      compare(before, names.require(second_), std::to_string(before->configID));
    }
    write(differences_, context.output, "There is no difference.");
    return differences_.rows.empty() ? ExitCode::Done : ExitCode::Differences;
  }

 private:
  ExitCode showPlan(const Context& context) const {
    const Plan plan = readPlanFile(first_).plan;
    write(listingOf(plan, nullptr), context.output, "Nothing changes.");
    return plan.changes() == 0 ? ExitCode::Done : ExitCode::Differences;
  }

  static Site siteOf(const Context& context, const std::string& word) {
    if (isFolder(word)) return readSiteFolder(word).site;
    // The settings say where the site is; how to get there, the command line may.
    const ConnectionOptions& given = context.connection;
    ConnectionOptions options;
    options.site = word.substr(kSitePrefix.size());
    options.settingsFile = given.settingsFile;
    options.timeout = given.timeout;
    options.passwordFile = given.passwordFile;
    options.passwordFromInput = given.passwordFromInput;
    for (const char* const name : {"--timeout", "--password-file"}) {
      if (given.given.contains(name)) options.given.insert(name);
    }
    Site site = onSite(options, loadSite);
    if (reportUnreadable(site)) {
      throw Failure(ExitCode::Findings, "The site '" + options.site + "' cannot be compared.");
    }
    return site;
  }

  void note(const char* kind, const std::string& name, const std::string& field, Value before,
            Value after) {
    differences_.add(kind, name, field, std::move(before), std::move(after));
  }

  /// One of the two may be null.
  void compare(const Site::Configuration& before, const Site::Configuration& after,
               const std::string& name) {
    if (!before || !after) {
      const auto shown = [](const Site::Configuration& record) {
        return record ? Value(toUtf8(record->Description)) : Value();
      };
      return note("configuration", name, "configuration", shown(before), shown(after));
    }
    for (const Column& column : columns().subspan<1>()) {
      if (column.onUpdate != Source::Record && !withLastChange_) continue;
      const FieldValue old = valueOf(*before, column.field);
      const FieldValue now = valueOf(*after, column.field);
      if (old == now) continue;
      note("configuration", name, toUtf8(column.property), wordsOf(column, old),
           wordsOf(column, now));
    }
  }

  void compareSites(const Site& before, const Site& after) {
    std::map<std::int16_t, std::pair<Site::Configuration, Site::Configuration>> configurations;
    for (const auto& record : before.configurations)
      configurations[record->configID].first = record;
    for (const auto& record : after.configurations)
      configurations[record->configID].second = record;
    for (const auto& [number, pair] : configurations) {
      compare(pair.first, pair.second, std::to_string(number));
    }
    std::map<std::wstring, std::pair<const SiteWorkstation*, const SiteWorkstation*>> workstations;
    for (const auto& one : before.workstations) workstations[upperCase(one.name)].first = &one;
    for (const auto& one : after.workstations) workstations[upperCase(one.name)].second = &one;
    for (const auto& [key, pair] : workstations) compare(pair.first, pair.second);
  }

  void compare(const SiteWorkstation* before, const SiteWorkstation* after) {
    const std::string name = toUtf8((before != nullptr ? before : after)->name);
    if (before == nullptr || after == nullptr) {
      return note("workstation", name, "workstation", before != nullptr ? Value(name) : Value(),
                  after != nullptr ? Value(name) : Value());
    }
    if (isSameAssignment(before->assigned, after->assigned)) return;
    const auto shown = [](const SiteWorkstation& workstation) {
      return workstation.configID == 0 ? std::string("none") : toUtf8(*workstation.assigned);
    };
    note("workstation", name, "configuration", shown(*before), shown(*after));
  }

  std::string first_;
  std::string second_;
  bool withLastChange_ = false;
  Listing differences_{.kind = "differences",
                       .columns = {{"kind", "Kind"},
                                   {"name", "Name"},
                                   {"field", "Field"},
                                   {"before", "A"},
                                   {"after", "B"}},
                       .rows = {}};
};

}  // namespace

std::unique_ptr<Command> diffCommand() { return std::make_unique<Diff>(); }

}  // namespace tlpacscfg::cli
