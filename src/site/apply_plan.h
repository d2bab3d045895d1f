#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "site/plan.h"

/// Executes plans on the data path that is open.
namespace tlpacscfg {

/// A row that is not as the plan expects it, because somebody else changed it meanwhile.
struct ForeignConfiguration {
  std::int16_t configID = 0;
  Site::Configuration expected;  ///< Null when the plan inserts it, or only counts on it.
  Site::Configuration stored;    ///< As it is now; null when there is none.
};

struct ForeignAssignment {
  std::wstring workstation;
  std::optional<std::wstring> expected;
  std::optional<std::wstring> stored;
  bool isGone = false;  ///< There is no such workstation any more.
  /// Not 0: it uses this configuration, which the plan deletes.
  std::int16_t uses = 0;
};

/// What makes a plan stale.
struct ForeignChanges {
  std::vector<ForeignConfiguration> configurations;
  std::vector<ForeignAssignment> assignments;

  bool any() const { return !configurations.empty() || !assignments.empty(); }
};

enum class Ending {
  Commit,
  RollBack,  ///< A dry run.
};

/// The remote path stored the plan, but not as it was sent, and cannot roll back.
class StoredOtherwise : public RunTimeError {
 public:
  StoredOtherwise(const RunTimeError& reason, Plan stored)
      : RunTimeError(reason), stored_(std::move(stored)) {}

  /// The plan with the rows after it as they are stored.
  const Plan& stored() const { return stored_; }

 private:
  Plan stored_;
};

/// The statements as the remote path sends them, in one request; blank lines tell them apart.
std::wstring requestOf(const Plan& plan);

/// In one transaction: reads the rows of the plan and compares them, executes its statements, reads
/// the rows back and compares them, and ends as asked. On the remote path the statements are one
/// request, which the service executes as one transaction; the rows are read before and after it,
/// and a dry run ends the request with a statement that fails.
/// When somebody else changed a row, nothing is written. `beforeCommit` is called when only the
/// commit, or the one request, is left to do. What throws before that has written nothing; after
/// it, outcomeOf tells what is stored, unless it is a StoredOtherwise.
[[nodiscard]] ForeignChanges applyPlan(const Plan& plan, Ending ending,
                                       const std::function<void()>& beforeCommit);

/// What became of a change whose outcome is unknown.
enum class Outcome { Stored, NotStored, Unknown };

/// Looks at the rows that the plan was going to change. Unknown when they are neither as before nor
/// as after.
Outcome outcomeOf(const Plan& plan);

}  // namespace tlpacscfg
