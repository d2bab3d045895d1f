#pragma once

#include <string>
#include <utility>
#include <vector>

#include "faults/fault.h"
#include "harness/core_fixture.h"

namespace tlpacscfg::test {

/// Statements that do harm, and those that undo it.
struct Damage {
  std::vector<std::wstring> harm;
  std::vector<std::wstring> repair;
};

struct SiteState {
  std::wstring rows;  ///< All but the marks.
  int marks;
};

/// One use of the component, on a site's database in a known state.
class Scenario : public SiteTest {
 public:
  Scenario();
  ~Scenario() override;

  /// Fills the database, connects, and has in memory what the scenario works on.
  virtual void start() = 0;
  /// Prepares another run after one that failed or left nothing to do.
  virtual void startAgain() {}
  /// What is in memory now.
  virtual std::wstring memory() const = 0;

  /// The result, or "error <number>: <description>".
  std::wstring run();
  std::vector<system::Message> takeMessages() { return std::exchange(messages, {}); }

  /// `step` is the line of the log, the row or the command at which the fault begins.
  void plan(Fault fault, int step);
  bool faultBegan() const { return began_; }
  void endFault();

  int linesLogged() const;
  SiteState siteState() const;
  /// From now on every row that anybody writes is noted.
  void noteWrites() const;
  /// What was written, like "1 INSERT Interface_PACS_cfg, ...", tables in alphabetical order.
  std::wstring writes() const;
  void expectNoOpenTransaction() const;
  /// Describes rows that are neither the old nor the new ones.
  virtual std::wstring outline() const { return L"torn"; }

 protected:
  /// The statement's result as text. Throws what it throws.
  virtual std::wstring act() = 0;
  /// The line of the log at which the command begins; 0 for the start of the scenario.
  virtual int lineOfCommand(int command) const { return 2 * command - 1; }
  /// The damage at a row, counted in the order in which the scenario reads or writes them.
  virtual Damage refusal(int) const { return {}; }
  virtual Damage unreadableRow(int) const { return {}; }
  virtual Damage badValue(int) const { return {}; }

  void TestBody() override {}

  static Damage refuse(const std::wstring& event, const std::wstring& condition = L"1");
  static Damage refuseMark() { return refuse(L"INSERT ON System_offline_db_updates"); }
  /// Makes reading a table fail at the rows of the condition.
  static Damage spoilReading(const std::wstring& table, const std::wstring& condition);

 private:
  void begin();
  void damage(Damage damage);

  Fault fault_ = Fault::None;
  int step_ = 0;
  int firstLine_ = 0;
  bool began_ = false;
  std::wstring logFile_;
  std::vector<std::wstring> repair_;
  DatabaseFault databaseFault_;
};

}  // namespace tlpacscfg::test
