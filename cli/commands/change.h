#pragma once

#include <functional>
#include <string>
#include <vector>

#include "cli/base/option.h"
#include "cli/journal/journal.h"
#include "cli/program/context.h"
#include "site/plan.h"

/// What all writing commands have in common.
namespace tlpacscfg::cli {

struct ChangeOptions {
  std::string planFile;
  bool dryRun = false;
  bool yes = false;
  int maxChanges = 50;
};

/// The option table of a command: its own lines, and those that fill the options.
std::vector<Option> optionsOf(ChangeOptions& options, std::vector<Option> own);
/// The same without --plan.
std::vector<Option> applyingOptionsOf(ChangeOptions& options, std::vector<Option> own);

/// The journal that the options or the settings of the site name.
Journal journalFor(const ConnectionOptions& options);

/// What the journal says of a change.
struct Change {
  std::string command;
  int undoes = 0;  ///< The number of the change that it takes back; 0: none.
};
Change undoOf(int number);

/// Opens the site, settles what an interrupted change left, reads the site, makes the plan and
/// shows it. Then it writes the plan to a file, tries it or applies it, as the options say, with an
/// entry in the journal.
ExitCode runChange(
    Context& context, const ChangeOptions& options, Change change,
    const std::function<Plan(const Site& site, const std::vector<JournalEntry>& journal,
                             Change& change)>& makePlan);

/// The changes to the site that is open. Finds out what became of pending ones, and says so.
std::vector<JournalEntry> settledEntries(const Journal& journal, const std::string& site);

}  // namespace tlpacscfg::cli
