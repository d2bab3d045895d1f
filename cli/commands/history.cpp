#include <algorithm>

#include "cli/base/failure.h"
#include "cli/commands/change.h"
#include "cli/commands/commands.h"
#include "cli/connection/site_connection.h"
#include "cli/formats/changes.h"

namespace tlpacscfg::cli {
namespace {

Listing listingOfEntries(const std::vector<JournalEntry>& entries) {
  Listing listing{.kind = "history",
                  .columns = {{"number", "Number"},
                              {"time", "Time"},
                              {"command", "Command"},
                              {"changes", "Changes"},
                              {"state", "State"},
                              {"user", "User"},
                              {"site", "Site"}},
                  .rows = {}};
  for (const JournalEntry& entry : entries) {
    const std::string state = isUndone(entries, entry.number) ? "undone" : wordOf(entry.state);
    listing.rows.push_back({std::int64_t{entry.number}, entry.time, entry.command,
                            countOf(entry.plan), state, entry.user, entry.site});
  }
  return listing;
}

class History : public Command {
 public:
  CommandHelp help() const override {
    return {.name = "history",
            .summary = "List the changes made with this program, or show one",
            .examples =
                "  tlpacscfg history\n"
                "  tlpacscfg --site main history 17\n"};
  }

  std::vector<Option> options() override {
    return {{.names = "NUMBER",
             .value = "",
             .help = "Show what this change did; all are listed when it is not given",
             .target = Number{&number_, 1}}};
  }

  ExitCode run(Context& context) override {
    const std::vector<JournalEntry> entries = entriesFor(context);
    if (number_ == 0) {
      write(listingOfEntries(entries), context.output, "There is no change.");
      return ExitCode::Done;
    }
    const auto found = std::ranges::find(entries, number_, &JournalEntry::number);
    if (found == entries.end()) {
      throw Failure(ExitCode::Usage, "There is no change " + std::to_string(number_) + ".");
    }
    write(listingOf(found->plan, nullptr), context.output);
    return ExitCode::Done;
  }

 private:
  /// Of the site that is named, which is asked what became of interrupted ones; else of all sites.
  static std::vector<JournalEntry> entriesFor(const Context& context) {
    const Journal journal = journalFor(context.connection);
    const std::string site = nameOfSite(context.connection);
    if (site.empty()) return journal.entries();
    return onSite(context.connection, [&] { return settledEntries(journal, site); });
  }

  int number_ = 0;
};

}  // namespace

std::unique_ptr<Command> historyCommand() { return std::make_unique<History>(); }

}  // namespace tlpacscfg::cli
