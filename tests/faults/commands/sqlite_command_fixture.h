#pragma once

#include <memory>

#include "faults/commands/command_site.h"
#include "faults/commands/odbc_calls.h"
#include "faults/fault.h"
#include "harness/core_fixture.h"

namespace tlpacscfg::test {

/// The calls of an undisturbed command, as OdbcCalls notes them: first the question whether the
/// connection still answers; a deletion reads the list before and after it asks.
std::string verbsOf(Command command);
/// The numbers of these calls. Of the two statements for each workstation they are the first, the
/// first of the second batch, and the last: all are alike, in one transaction.
std::vector<int> callsOf(Command command);

/// The windows' commands on a site in SQLite.
class SqliteCommandTest : public SiteTest {
 protected:
  SqliteCommandTest();

  void fill(Command command) const;
  /// Makes a fresh site, and an administrator who is about to give the command.
  void begin(Command command);
  void give() { error = administrator->give(); }
  /// Gives the command and does the action at one of its calls. False when there is no such call.
  bool giveWith(int call, OdbcMoment moment, const std::function<void()>& action);
  /// What an undisturbed command leaves.
  std::wstring undisturbed(Command command);

  Stored stored() const {
    return storedIn([this](const std::wstring& sql) { return site.rows(sql); });
  }
  /// Another program can write at once.
  void expectNothingOpen() const;
  char letter(const std::wstring& done) const;
  /// The same command again stores what was meant, once, and asks no more than that.
  void expectSucceedsNow(const std::wstring& done, std::size_t questions = 0);

  std::unique_ptr<Administrator> administrator;
  Stored before;
  std::wstring viewBefore;
  std::wstring error;

  /// Hardly waits for locks.
  Probe impatient{L"DSN=TlImpatientSite;"};
};

}  // namespace tlpacscfg::test
