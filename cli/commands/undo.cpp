#include <algorithm>

#include "cli/base/failure.h"
#include "cli/commands/change.h"
#include "cli/commands/commands.h"

namespace tlpacscfg::cli {
namespace {

/// Number 0 stands for the last one that is neither undone nor an undo. Throws Failure.
const JournalEntry& entryToUndo(const std::vector<JournalEntry>& entries, int number) {
  const auto isWanted = [&](const JournalEntry& entry) {
    if (number != 0) return entry.number == number;
    return entry.state == ChangeState::Stored && entry.undoes == 0 &&
           !isUndone(entries, entry.number);
  };
  const auto found = std::find_if(entries.rbegin(), entries.rend(), isWanted);
  if (found == entries.rend()) {
    throw Failure(ExitCode::Usage,
                  number == 0 ? "There is no change to this site that can be undone."
                              : "There is no change " + std::to_string(number) + " to this site.");
  }
  if (found->state != ChangeState::Stored) {
    throw Failure(ExitCode::Usage, "Change " + std::to_string(number) +
                                       " cannot be undone: it is " + wordOf(found->state) + ".");
  }
  if (isUndone(entries, found->number)) {
    throw Failure(ExitCode::Usage, "Change " + std::to_string(number) + " is undone already.");
  }
  return *found;
}

class Undo : public Command {
 public:
  CommandHelp help() const override {
    return {.name = "undo",
            .summary = "Take back a change that was made with this program",
            .examples =
                "  tlpacscfg --site main undo\n"
                "  tlpacscfg --site main undo 17 --dry-run\n"};
  }

  std::vector<Option> options() override {
    return optionsOf(change_, {{.names = "NUMBER",
                                .value = "",
                                .help = "Of the change, as 'history' lists it; the last one when "
                                        "it is not given",
                                .target = Number{&number_, 1}}});
  }

  ExitCode run(Context& context) override {
    return runChange(context, change_, {.command = "undo"},
                     [&](const Site& site, const auto& entries, Change& change) {
                       const JournalEntry& entry = entryToUndo(entries, number_);
                       change = undoOf(entry.number);
                       return reversed(entry.plan, site);
                     });
  }

 private:
  int number_ = 0;
  ChangeOptions change_;
};

}  // namespace

std::unique_ptr<Command> undoCommand() { return std::make_unique<Undo>(); }

}  // namespace tlpacscfg::cli
