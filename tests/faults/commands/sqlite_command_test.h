#pragma once

#include <memory>

#include "odbc/connection.h"
#include "faults/commands/command_site.h"
#include "faults/commands/odbc_calls.h"
#include "harness/core_test.h"

namespace tlpacscfg::test {

/// The calls of an undisturbed command at which things happen, the last one included. Of the two
/// statements for each workstation they are the first, the first of the second batch, and the last:
/// all are alike, in one transaction that knows of no batches.
std::vector<int> callsOf(Command command);

/// The windows' commands on a site in SQLite.
class SqliteCommandTest : public SiteTest {
 protected:
  SqliteCommandTest();

  void fill(Command command) const;
  /// A fresh site, and an administrator who is about to give the command.
  void begin(Command command);
  void give() { error = administrator->give(); }
  /// Gives the command and does the action at one of its calls. False when there is no such call.
  bool giveWith(int call, OdbcMoment moment, const std::function<void()>& action);
  /// What an undisturbed command leaves.
  std::wstring undisturbed(Command command);

  Stored stored() const { return storedIn(site.rows(storedQuestion())); }
  /// Nobody has to wait for a transaction of the command's.
  void expectNothingOpen() const;
  char letter(const std::wstring& done) const;
  /// The same command again stores what was meant, once, and asks no more than that.
  void expectGoesWellNow(const std::wstring& done, std::size_t questions = 0);

  std::shared_ptr<odbc::Connection> anotherConnection() const;

  std::unique_ptr<Administrator> administrator;
  Stored before;
  std::wstring viewBefore;
  std::wstring error;

  /// Hardly waits for locks.
  Probe impatient{L"DSN=TlImpatientSite;"};
};

}  // namespace tlpacscfg::test
