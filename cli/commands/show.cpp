#include <iostream>

#include "cli/base/failure.h"
#include "cli/commands/commands.h"
#include "cli/commands/loaded_site.h"
#include "cli/commands/site_names.h"
#include "cli/connection/site_connection.h"
#include "cli/formats/fields.h"
#include "cli/formats/output.h"
#include "cli/program/context.h"
#include "site/site.h"
#include "support/text.h"

namespace tlpacscfg::cli {
namespace {

Value valueOfCell(const FieldValue& value) {
  if (const auto* number = std::get_if<std::int16_t>(&value)) return std::int64_t{*number};
  if (const auto* number = std::get_if<std::int32_t>(&value)) return std::int64_t{*number};
  return toUtf8(std::get<std::wstring>(value));
}

/// Every column as it is stored.
Listing listingOfFields(const std::vector<Site::Configuration>& records) {
  Listing listing{.kind = "records", .columns = {}, .rows = {}};
  for (const Column& column : columns()) {
    listing.columns.push_back({toUtf8(column.property), toUtf8(column.property)});
  }
  for (const auto& record : records) {
    std::vector<Value>& row = listing.rows.emplace_back();
    for (const Column& column : columns()) {
      row.push_back(valueOfCell(valueOf(*record, column.field)));
    }
  }
  return listing;
}

class Show : public Command {
 public:
  CommandHelp help() const override {
    return {.name = "show",
            .summary = "Show configurations with all their fields",
            .examples =
                "  tlpacscfg --site main show 7\n"
                "  tlpacscfg --site main show \"O'Neil Clinic\" --json\n"
                "  tlpacscfg --site main show READ-01\n"};
  }

  std::vector<Option> options() override {
    return {{.names = "NAME",
             .value = "",
             .help = "The number or description of a configuration, or a workstation, whose "
                     "configuration is shown",
             .target = &names_,
             .required = true}};
  }

  ExitCode run(Context& context) override {
    const Site site = onSite(context.connection, loadSite);
    std::vector<Site::Configuration> records;
    for (const std::string& name : names_) records.push_back(configurationOf(site, name));
    if (context.output.json || context.output.csv) {
      write(listingOfFields(records), context.output);
    } else {
      for (const auto& record : records) {
        if (record != records.front()) std::cout << '\n';
        std::cout << withoutCarriageReturns(summaryOf(*record));
      }
    }
    return ExitCode::Done;
  }

 private:
  static Site::Configuration configurationOf(const Site& site, const std::string& name) {
    const SiteNames names(site);
    if (auto record = names.find(name)) return record;
    names.requireReadable(name);
    const SiteWorkstation* const workstation = names.workstation(name);
    if (workstation == nullptr) {
      reportUnreadable(site);
      throw Failure(ExitCode::Usage,
                    "There is no configuration and no workstation '" + name + "'.");
    }
    if (!workstation->configID) {
      throw Failure(ExitCode::Usage, "The workstation '" + name + "' has '" +
                                         toUtf8(*workstation->assigned) +
                                         "', which is not a number of a configuration.");
    }
    const std::int16_t configID = *workstation->configID;
    if (configID == 0) {
      throw Failure(ExitCode::Usage, "The workstation '" + name + "' has no configuration.");
    }
    if (auto record = site.find(configID)) return record;
    names.requireReadable(std::to_string(configID));
    throw Failure(ExitCode::Usage, "The workstation '" + name + "' has the configuration " +
                                       std::to_string(configID) + ", which does not exist.");
  }

  static std::string withoutCarriageReturns(std::string text) {
    std::erase(text, '\r');
    return text;
  }

  std::vector<std::string> names_;
};

}  // namespace

std::unique_ptr<Command> showCommand() { return std::make_unique<Show>(); }

}  // namespace tlpacscfg::cli
