#pragma once

#include <functional>
#include <string>

/// The component's calls that reach a database: the statements it runs, and the ends of its
/// transactions. The program is linked so that they come by here.
namespace tlpacscfg::test {

enum class OdbcMoment { Before, After };

/// Counts from now on, and calls `listener` before and after each call; it does not hear of those
/// that it makes itself. Until its end.
class OdbcCalls {
 public:
  using Listener = std::function<void(int call, OdbcMoment moment)>;
  explicit OdbcCalls(Listener listener);
  ~OdbcCalls();
  OdbcCalls(const OdbcCalls&) = delete;
  OdbcCalls& operator=(const OdbcCalls&) = delete;

  int count() const;

  /// For a listener before a call: it fails, and the database does not hear of it.
  static void refuseThisCall();
};

}  // namespace tlpacscfg::test
