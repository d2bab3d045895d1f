#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "site/plan.h"

/// The changes made with the tool on this computer, each in a file with the whole rows before and
/// after. It holds no password.
namespace tlpacscfg::cli {

enum class ChangeState {
  Pending,  ///< Written before the commit; what remains of a program that was stopped there.
  Stored,
  NotStored,  ///< It failed, or was stopped before the commit.
  Unknown,    ///< It was stopped, and the rows have been changed again since.
};

struct JournalEntry {
  int number = 0;
  ChangeState state = ChangeState::Pending;
  std::string site;
  std::string command;
  std::string time;
  std::string user;
  std::string computer;
  std::int64_t process = 0;
  std::string started;  ///< The start of the process; empty in a file of an older version.
  int undoes = 0;       ///< The number of the change that this one takes back; 0: none.
  Plan plan;
};

/// The word for the state, as files and listings have it.
const char* wordOf(ChangeState state);

class Journal {
 public:
  /// An empty text means the user's own place.
  explicit Journal(const std::string& directory);

  /// By number. Throws Failure for a file that cannot be read.
  std::vector<JournalEntry> entries() const;

  /// Writes the change as pending, under the next free number. It is there after a failure of the
  /// power, too. Throws Failure.
  JournalEntry begin(JournalEntry entry) const;
  /// Throws Failure.
  void settle(JournalEntry& entry, ChangeState state) const;

 private:
  std::filesystem::path fileOf(int number) const;

  std::filesystem::path directory_;
};

/// Whether another change took it back, and was not taken back itself.
bool isUndone(const std::vector<JournalEntry>& entries, int number);

}  // namespace tlpacscfg::cli
