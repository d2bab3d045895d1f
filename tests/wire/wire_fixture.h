#pragma once

#include <string>
#include <utility>
#include <vector>

#include "harness/core_fixture.h"
#include "harness/probe.h"

namespace tlpacscfg::test {

using WireColumns = std::vector<std::pair<std::string, std::string>>;  ///< Name and type.

/// A request of a client after its login: a batch, or the begin, commit or rollback of a
/// transaction, even an empty one.
class At {
 public:
  /// Counts from 1, starting now, over all connections.
  static At request(int number);
  /// The first batch that begins with the text.
  static At batch(const std::wstring& beginning);
  /// The first one, as a request of its own or at the beginning of a batch.
  static At begin();
  static At commit();
  static At rollback();

  const std::string& json() const { return json_; }

 private:
  explicit At(std::string json) : json_(std::move(json)) {}
  std::string json_;
};

struct Statements {
  int count;
};
struct Rows {
  int count;
};

/// How the stored site alters texts and dates.
struct SiteTraits {
  enum class Widths { Unlimited, Cut, Refused };
  /// The treatment of texts that are longer than their column; refusals have the number 8152.
  Widths widths = Widths::Unlimited;
  /// Letters outside of Latin-1 become question marks.
  bool codePage = false;
  /// A backslash at the end of a line is removed together with the line break.
  bool joinsLines = false;
  /// Dates have the day before the month unless written with a T.
  bool dayFirst = false;
};

enum class AfterRows { Answers, HangsUp };
enum class AfterFailure { KeepsTransaction, UndoesTransaction };

/// The component with the SQL Server driver, connected to a stand-in for the server that gives the
/// scripted answers and records its requests.
class WireTest : public CoreTest {
 protected:
  WireTest();

  HostSettings config;

  void connect();

  /// Takes effect with the next connection.
  void stallLogin();
  void hangUpAtLogin();
  void refuseLogin(int number, const std::wstring& text);
  /// The rows for every batch that begins with the text.
  void answer(const std::wstring& to, const WireColumns& columns, const ProbeRows& rows,
              AfterRows afterRows = AfterRows::Answers);
  /// The failure of one statement, counted from 1, of every batch that begins with the text.
  void fail(const std::wstring& to, int statement, int number, const std::wstring& text,
            AfterFailure afterFailure = AfterFailure::KeepsTransaction);
  /// No answer to any batch that begins with the text, until the driver cancels it.
  void stall(const std::wstring& to);
  void answerTestStatement();

  /// Creates an SQLite file with the empty tables of a site, from which the server answers what has
  /// no scripted answer. Takes effect with the next connection, as the other answers do.
  void storeSite(const SiteTraits& traits = {});
  ProbeRows siteRows(const std::wstring& sql) const { return siteProbe().rows(sql); }
  /// Changes the site as a second administrator, in SQLite's dialect. Throws std::runtime_error
  /// while a transaction locks the rows.
  void runAtSite(const std::wstring& sql) const;
  /// The same during a command: before the request is executed, or as soon afterwards as no
  /// transaction locks the rows.
  void changeSiteAt(const At& at, const std::wstring& sql) const;

  /// Faults, each of which happens once. A hang-up rolls back the connection's transaction.
  void hangUpBefore(const At& at) const;
  /// The request is executed, but its answer is lost.
  void hangUpAfter(const At& at) const;
  /// Only so many statements or rows of the batch are executed and answered.
  void hangUpInside(const At& at, Statements answered) const;
  void hangUpInside(const At& at, Rows sent) const;
  /// No further answer on this connection, as if the network were dead. The driver has no time
  /// limit for the begin, commit or rollback of a transaction: there it waits until another thread
  /// calls restartServer().
  void stallBefore(const At& at) const;
  void stallAfter(const At& at) const;
  /// The request is not executed.
  void failAt(const At& at, int number, const std::wstring& text,
              AfterFailure afterFailure = AfterFailure::KeepsTransaction) const;
  /// The number of faults and changes that have not happened yet.
  int faultsLeft() const;

  /// Closes every connection.
  void restartServer() const;
  /// Refuses connections until startServer().
  void stopServer() const;
  void startServer() const;
  /// Waits until so many connections are open and the transactions of the others are rolled back;
  /// the server notices a closed connection later than the component. Throws std::runtime_error
  /// after a time limit.
  void waitForSessions(int count) const;

  /// What the server recorded, one line for each event.
  std::vector<std::string> record() const;
  /// The lines since the last call.
  std::vector<std::string> newRecord();

  static std::string login(const std::wstring& user, const std::wstring& password,
                           const std::wstring& database);
  static std::string batch(const std::wstring& text);
  static std::string takenBack();
  static std::string transaction(const std::string& event);

 private:
  void writeScript() const;
  Probe siteProbe() const;

  std::string login_ = "null";
  std::vector<std::string> answers_;
  std::size_t seen_ = 0;
};

}  // namespace tlpacscfg::test
