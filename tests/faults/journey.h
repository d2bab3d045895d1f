#pragma once

#include <memory>
#include <string>
#include <vector>

#include "odbc/connection.h"
#include "harness/core_test.h"

namespace tlpacscfg::test {

enum class Fault {
  None,
  LogUnwritable,  ///< From a line of the log on.
  LogDiskFull,    ///< From a line of the log on; only where /dev/full is at hand.
  Refused,        ///< The database refuses to write one row.
  Unreadable,     ///< The database fails at one row that is read.
  BadValue,       ///< One row holds what does not convert.
  Locked,         ///< Another connection keeps everybody out, from a command on.
  WritingLocked,  ///< Another connection is about to write.
  CommitLocked,   ///< Another connection reads, which holds up a commit and nothing before it.
  DiskFull,
  ReadOnly,
  FileGone,
};

const wchar_t* nameOf(Fault fault);

/// Statements that do harm, and those that undo it.
struct Damage {
  std::vector<std::wstring> harm;
  std::vector<std::wstring> repair;
};

struct SiteState {
  /// All rows of the site but those of its marks.
  std::wstring rows;
  int marks;
};

/// What the component is used for, from a site's database in a known state on.
class Journey : public SiteTest {
 public:
  Journey();
  ~Journey() override;

  /// Fills the database, connects, and has in memory what the journey works on.
  virtual void start() = 0;
  /// Gets ready to go again after a journey that failed, or that had nothing left to do.
  virtual void startAgain() {}
  /// What is in memory now.
  virtual std::wstring memory() const = 0;

  /// Goes the way; the result, or "error <number>: <description>".
  std::wstring go();
  std::vector<system::Message> takeMessages() { return std::exchange(messages, {}); }

  /// The step is the line of the log, the row, or the command at which the fault begins.
  void arrange(Fault fault, int step);
  void relent();
  /// Whether the step was reached.
  bool faultBegan() const { return begun_; }

  int linesLogged() const;
  SiteState siteState() const;
  /// What rows that are neither the old nor the new ones amount to.
  virtual std::wstring outline() const { return L"torn"; }

 protected:
  /// The statement's result as text. Throws what it throws.
  virtual std::wstring act() = 0;
  /// The line of the log at which the command begins; 0 for a command that begins unheard.
  virtual int lineOfCommand(int command) const { return 2 * command - 1; }
  /// What does the harm at a row, counted in the order in which the journey meets them.
  virtual Damage refusal(int) const { return {}; }
  virtual Damage unreadableRow(int) const { return {}; }
  virtual Damage badValue(int) const { return {}; }

  void TestBody() override {}

  static Damage refuse(const std::wstring& event, const std::wstring& condition = L"1");
  static Damage refuseMark() { return refuse(L"INSERT ON System_offline_db_updates"); }
  /// Makes reading a table fail at the rows of the condition.
  static Damage spoilReading(const std::wstring& table, const std::wstring& condition);

  std::shared_ptr<odbc::Connection> anotherConnection() const;
  std::wstring siteFile() const;

 private:
  void begin();
  void lock(const std::vector<std::wstring>& statements);
  void inflict(Damage damage);
  void fillDisk();

  Fault fault_ = Fault::None;
  int step_ = 0;
  int firstLine_ = 0;
  bool begun_ = false;
  std::wstring logFile_;
  std::vector<std::wstring> repair_;
  std::shared_ptr<odbc::Connection> locker_;
};

}  // namespace tlpacscfg::test
