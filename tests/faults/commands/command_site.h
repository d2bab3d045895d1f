#pragma once

#include <functional>
#include <string>
#include <vector>

#include "faults/commands/administrator.h"
#include "harness/probe.h"

/// The site on which the windows' commands run, in SQL that both SQLite and the stand-in for SQL
/// Server understand.
namespace tlpacscfg::test {

inline constexpr int kWorkstations = 250;

/// Fills the empty tables: configurations 1, 5 and 9, and as many workstations as the command
/// needs.
std::vector<std::wstring> contentFor(Command command);
/// Makes the tables empty again.
std::vector<std::wstring> clearing();
/// A query whose first cell is 1 when the command's change is there, once.
std::wstring oursQuestion(Command command);

/// A second administrator's change that conflicts with the command's, or does not.
struct Rival {
  const char* name;
  Command command;
  std::wstring change;
  /// A query whose first cell is 1 when his change is there.
  std::wstring check;
};
inline const char* nameOf(const Rival& rival) { return rival.name; }
const std::vector<Rival>& rivals();
/// His change, and a note of how many rows it found.
std::vector<std::wstring> statementsOf(const Rival& rival);

/// What became of a command with a rival: a letter in the charts.
inline constexpr char kBoth = 'B';  ///< His came after the command, or beside it: both are stored.
inline constexpr char kAsked =
    'A';  ///< His is stored, and was asked about; the command did nothing.
inline constexpr char kFirst = 'F';  ///< The command came first, and he found no row to change.
struct Meeting {
  std::wstring error;
  bool asked = false;
  /// Of meetingQuestion().
  ProbeRow answer;
};
std::wstring meetingQuestion(const Rival& rival);
/// Whatever is none of these fails the test.
char letterOf(const Rival& rival, const Meeting& meeting);

inline constexpr char kWrong = '!';

/// The rows of the site, and the number of its marks.
struct Stored {
  std::wstring rows;
  int marks = 0;
};
/// `read` runs a query at the site.
Stored storedIn(const std::function<ProbeRows(const std::wstring&)>& read);

/// How a command with a fault ends: a letter in the charts.
struct Ending {
  std::wstring error;  ///< Empty for none.
  Stored before;
  Stored now;
  std::wstring viewBefore;
  std::wstring viewNow;
};

inline constexpr char kDone = 'D';         ///< No error; everything is stored, with one mark.
inline constexpr char kUndone = 'U';       ///< An error, and everything is as it was.
inline constexpr char kUnconfirmed = 'C';  ///< An error that says so; everything is stored.

/// A name for a test: only letters and digits.
std::string inOneWord(const std::string& text);

/// The letter; whatever is none of these fails the test. `done` is what an undisturbed run leaves.
char letterOf(const Ending& ending, const std::wstring& done);

}  // namespace tlpacscfg::test
