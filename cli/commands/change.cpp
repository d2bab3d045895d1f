#include "cli/commands/change.h"

#include <algorithm>
#include <iostream>
#include <utility>

#include "cli/base/console.h"
#include "cli/base/failure.h"
#include "cli/base/process.h"
#include "cli/base/progress.h"
#include "cli/commands/loaded_site.h"
#include "cli/connection/settings_file.h"
#include "cli/connection/site_connection.h"
#include "cli/formats/changes.h"
#include "cli/formats/files.h"
#include "cli/formats/plan_file.h"
#include "site/apply_plan.h"
#include "support/system.h"
#include "support/text.h"

namespace tlpacscfg::cli {
namespace {

ChangeState stateOf(Outcome outcome) {
  switch (outcome) {
    case Outcome::Stored:
      return ChangeState::Stored;
    case Outcome::NotStored:
      return ChangeState::NotStored;
    case Outcome::Unknown:
      break;
  }
  return ChangeState::Unknown;
}

std::string sentenceOf(ChangeState state) {
  if (state == ChangeState::Stored) return "it is stored.";
  if (state == ChangeState::NotStored) return "it is not stored.";
  if (state == ChangeState::Pending) {
    return "whether it is stored is not known; the next start with this site will find out.";
  }
  return "its rows have been changed again since, so nobody can tell whether it was stored.";
}

/// Whether the program that made the change has ended without settling it. Only its own computer
/// can tell.
bool wasInterrupted(const JournalEntry& entry) {
  if (entry.computer == toUtf8(system::computerName())) {
    return !isRunning(entry.process, entry.started);
  }
  say("tlpacscfg: change " + std::to_string(entry.number) + " is pending; the program on " +
      entry.computer + " settles it, or its next start there.");
  return false;
}

void requireConsent(const Plan& plan, const ChangeOptions& options) {
  const bool isMany = plan.changes() > static_cast<std::size_t>(options.maxChanges);
  if (options.yes || (!isMany && !plan.deletes())) return;
  const std::string reason = plan.deletes()
                                 ? "This deletes configurations."
                                 : "This changes " + countOf(plan) + ", more than --max-changes " +
                                       std::to_string(options.maxChanges) + " allows.";
  if (!inputIsTerminal()) {
    throw Failure(ExitCode::Usage, reason + " Nothing was changed. It needs --yes.");
  }
  if (!askYesNo(reason + " Go on?")) throw Failure(ExitCode::Usage, "Nothing was changed.");
}

void requireNoForeignChange(const ForeignChanges& foreign, const Site& site) {
  if (!foreign.any()) return;
  throw Failure(
      ExitCode::Conflict,
      "Somebody else changed the site meanwhile. Nothing was written." + textOf(foreign, &site));
}

/// What cannot be read can neither be compared nor be brought back by an undo.
void requireReadable(const Plan& plan, const Site& site) {
  for (const ConfigurationChange& change : plan.configurations) {
    if (!site.isUnreadable(change.configID())) continue;
    throw Failure(ExitCode::Findings,
                  "The stored configuration " + std::to_string(change.configID()) +
                      " cannot be read. Nothing was changed. Mend or delete its row in the "
                      "database first.");
  }
}

ForeignChanges carriedOut(const Plan& plan, Ending ending,
                          const std::function<void()>& beforeCommit) {
  const Progress progress("Changing the site");
  return applyPlan(plan, ending, beforeCommit);
}

void tryOut(const Plan& plan, const Site& site) {
  requireNoForeignChange(carriedOut(plan, Ending::RollBack, [] {}), site);
  say("This was a dry run of " + countOf(plan) + ". Nothing was written.");
}

/// What the database holds after an error; pending when it cannot be asked.
ChangeState stateByLooking(const Plan& plan) {
  try {
    return stateOf(outcomeOf(plan));
  } catch (const RunTimeError&) {
    return ChangeState::Pending;
  }
}

/// A journal that cannot be written is no reason to hide what became of the change.
void settle(const Journal& journal, JournalEntry& entry, ChangeState state) {
  try {
    journal.settle(entry, state);
  } catch (const Failure& failure) {
    say(std::string("tlpacscfg: ") + failure.what() +
        " The next start with this site settles change " + std::to_string(entry.number) + ".");
  }
}

std::string howToUndo(const JournalEntry& entry) {
  const std::string number = std::to_string(entry.number);
  return "'tlpacscfg undo " + number + "' takes change " + number + " back.";
}

/// The failure of a change whose entry has begun, after looking what is stored.
Failure settled(const Journal& journal, JournalEntry& entry, const RunTimeError& error) {
  Failure failure = failureOf(error);
  const ChangeState state = stateByLooking(entry.plan);
  if (state != ChangeState::Pending) settle(journal, entry, state);
  if (state == ChangeState::NotStored) return failure;
  const bool isLost = failure.code() == ExitCode::NoConnection;
  return {isLost ? failure.code() : ExitCode::NotAsSent, std::string(failure.what()) + "\nChange " +
                                                             std::to_string(entry.number) + ": " +
                                                             sentenceOf(state)};
}

void apply(const Plan& plan, const Site& site, const Journal& journal, JournalEntry entry) {
  bool begun = false;
  entry.plan = plan;
  try {
    const auto begin = [&] {
      entry = journal.begin(std::move(entry));
      begun = true;
    };
    requireNoForeignChange(carriedOut(plan, Ending::Commit, begin), site);
  } catch (const StoredOtherwise& error) {
    entry.plan = error.stored();
    settle(journal, entry, ChangeState::Stored);
    throw Failure(ExitCode::NotAsSent,
                  toUtf8(error.description()) + "\nIt is stored like this. " + howToUndo(entry));
  } catch (const RunTimeError& error) {
    if (begun) throw settled(journal, entry, error);
    throw;
  }
  settle(journal, entry, ChangeState::Stored);
  say("Changed " + countOf(plan) + ". " + howToUndo(entry));
}

ExitCode carryOut(const Plan& plan, const Site& site, const ChangeOptions& options,
                  const Context& context, const Journal& journal, JournalEntry entry) {
  const bool planToOutput = options.planFile == "-";
  if (!planToOutput) write(listingOf(plan, &site), context.output, "Nothing changes.");
  if (!options.planFile.empty()) {
    const std::string document = planDocument({.plan = plan, .undoes = entry.undoes});
    if (planToOutput) {
      std::cout << document;
    } else {
      writeFile(pathOf(options.planFile), document);
    }
    return plan.changes() == 0 ? ExitCode::Done : ExitCode::Differences;
  }
  if (plan.changes() == 0) return ExitCode::Done;
  requireFittingRequest(context.connection, requestOf(plan));
  // What is shown must arrive before anything is stored.
  flushOutput();
  if (options.dryRun) {
    tryOut(plan, site);
  } else {
    requireConsent(plan, options);
    apply(plan, site, journal, std::move(entry));
  }
  return ExitCode::Done;
}

}  // namespace

std::vector<Option> applyingOptionsOf(ChangeOptions& options, std::vector<Option> own) {
  own.insert(
      own.end(),
      {{"--dry-run", "", "Do all of it in the database, and then take it back: nothing is stored",
        &options.dryRun},
       {"-y,--yes", "", "Delete, and change more than --max-changes, without asking", &options.yes},
       {"--max-changes", "COUNT", "More changes need --yes; 50 when it is not given",
        Number{&options.maxChanges, 0}}});
  return own;
}

std::vector<Option> optionsOf(ChangeOptions& options, std::vector<Option> own) {
  own.push_back({"--plan", "FILE", "Change nothing; write what would change to a file for 'apply'",
                 &options.planFile});
  return applyingOptionsOf(options, std::move(own));
}

Journal journalFor(const ConnectionOptions& options) {
  return Journal(withSiteSettings(options).journal);
}

Change undoOf(int number) {
  return {.command = "undo " + std::to_string(number), .undoes = number};
}

std::vector<JournalEntry> settledEntries(const Journal& journal, const std::string& site) {
  std::vector<JournalEntry> entries = journal.entries();
  std::erase_if(entries, [&](const JournalEntry& entry) { return entry.site != site; });
  for (JournalEntry& entry : entries) {
    if (entry.state != ChangeState::Pending || !wasInterrupted(entry)) continue;
    const ChangeState state = stateByLooking(entry.plan);
    if (state != ChangeState::Pending) settle(journal, entry, state);
    say("tlpacscfg: change " + std::to_string(entry.number) + " was interrupted; " +
        sentenceOf(state));
  }
  return entries;
}

ExitCode runChange(
    Context& context, const ChangeOptions& options, Change change,
    const std::function<Plan(const Site& site, const std::vector<JournalEntry>& journal,
                             Change& change)>& makePlan) {
  const Journal journal = journalFor(context.connection);
  const std::string siteName = nameOfSite(context.connection);
  return onSite(context.connection, [&] {
    const std::vector<JournalEntry> entries = settledEntries(journal, siteName);
    const Site site = loadSite();
    reportUnreadable(site);
    const Plan plan = makePlan(site, entries, change);
    requireReadable(plan, site);
    JournalEntry entry;
    entry.site = siteName;
    entry.command = change.command;
    entry.undoes = change.undoes;
    return carryOut(plan, site, options, context, journal, entry);
  });
}

}  // namespace tlpacscfg::cli
