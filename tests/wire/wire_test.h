#pragma once

#include <string>
#include <utility>
#include <vector>

#include "harness/core_test.h"
#include "harness/probe.h"

namespace tlpacscfg::test {

using WireColumns = std::vector<std::pair<std::string, std::string>>;  ///< Name and type.

/// A request of a client to the server after its login: a batch, or the begin, commit or rollback
/// of a transaction, an empty one's too.
class At {
 public:
  /// Counted from 1 and from now, over all connections.
  static At request(int number);
  /// The first batch that begins with the text.
  static At batch(const std::wstring& beginning);
  /// The first one, whether it is a request of its own or stands at the beginning of a batch.
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

/// How the stored site differs from one that keeps every text and date as it is written.
struct SiteTraits {
  enum class Widths { Unlimited, Cut, Refused };
  /// What becomes of texts that are longer than their column; the refusal's number is 8152.
  Widths widths = Widths::Unlimited;
  /// Letters outside of Latin-1 become question marks.
  bool codePage = false;
  /// A backslash at the end of a line vanishes from a text, and the line break too.
  bool joinsLines = false;
  /// Dates have the day before the month unless they are written with a T.
  bool dayFirst = false;
};

enum class AfterRows { Answers, HangsUp };
enum class AfterFailure { KeepsTransaction, UndoesTransaction };

/// The component on the SQL Server driver, and a stand-in for the server at the other end that
/// says what the test tells it to and keeps a record of what it is told.
class WireTest : public CoreTest {
 protected:
  WireTest();

  HostSettings config;

  void connect();

  /// Takes effect with the next connection.
  void stallLogin();
  void hangUpAtLogin();
  void acceptLogin();
  void refuseLogin(int number, const std::wstring& text);
  /// The rows for every batch that begins with the text.
  void answer(const std::wstring& to, const WireColumns& columns, const ProbeRows& rows,
              AfterRows afterRows = AfterRows::Answers);
  /// The failure of one statement, counted from 1, of every batch that begins with the text.
  void fail(const std::wstring& to, int statement, int number, const std::wstring& text,
            AfterFailure afterFailure = AfterFailure::KeepsTransaction);
  /// No answer to any batch that begins with the text, until the driver takes it back.
  void stall(const std::wstring& to);
  void answerTestStatement();

  /// An SQLite file with the tables of a site and no row, from which the server answers whatever
  /// nothing else answers. Takes effect with the next connection, as the other answers do.
  void storeSite(const SiteTraits& traits = {});
  ProbeRows siteRows(const std::wstring& sql) const { return siteProbe().rows(sql); }
  /// What a second administrator does, in SQLite's words. Throws std::runtime_error while a
  /// transaction holds the rows.
  void runAtSite(const std::wstring& sql) const;
  /// The same in the middle of a command: before the request is executed, or as soon afterwards as
  /// no transaction holds the rows.
  void changeSiteAt(const At& at, const std::wstring& sql) const;

  /// What goes wrong from now on, each once. A hang-up undoes the connection's transaction.
  void hangUpBefore(const At& at) const;
  /// The request is executed, its answer is lost.
  void hangUpAfter(const At& at) const;
  /// So much of the batch is executed and answered.
  void hangUpInside(const At& at, Statements answered) const;
  void hangUpInside(const At& at, Rows sent) const;
  /// Not a word any more on this connection, whatever the driver asks, as if the network were dead.
  /// The driver has no time limit for the begin, commit or rollback of a transaction: there it
  /// waits until restartServer() on another thread.
  void stallBefore(const At& at) const;
  void stallAfter(const At& at) const;
  /// The request is not executed.
  void failAt(const At& at, int number, const std::wstring& text,
              AfterFailure afterFailure = AfterFailure::KeepsTransaction) const;
  /// How many of these did not happen yet.
  int faultsLeft() const;

  /// Hangs up on every connection.
  void restartServer() const;
  /// From here to the start connections are refused.
  void stopServer() const;
  void startServer() const;
  /// Until so many connections are open and the transactions of the others are undone: the server
  /// notices after the component that a connection is closed. Throws std::runtime_error if that
  /// does not come about.
  void waitForSessions(int count) const;

  /// What the server was told, one line for each event.
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
