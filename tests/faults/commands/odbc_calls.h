#pragma once

#include <functional>
#include <string>

/// The component's calls that reach a database: the statements it runs, and the ends of its
/// transactions. The program is linked so that they pass through here.
namespace tlpacscfg::test {

enum class OdbcMoment { Before, After };

/// While it lives, notes the calls and runs `listener` before and after each; the calls that the
/// listener makes do not count.
class OdbcCalls {
 public:
  using Listener = std::function<void(int call, OdbcMoment moment)>;
  explicit OdbcCalls(Listener listener = nullptr);
  ~OdbcCalls();
  OdbcCalls(const OdbcCalls&) = delete;
  OdbcCalls& operator=(const OdbcCalls&) = delete;

  /// The calls in their order, like "SELECT UPDATE commit": a statement's first word in capitals,
  /// or how a transaction ended.
  std::string verbs() const;

  /// For a listener before a call: the call fails, and does not reach the database.
  static void refuseThisCall();
};

/// What the driver manager was last asked to connect with.
struct ConnectCall {
  std::wstring text;
  /// Whether a driver may ask the user: SQL_DRIVER_NOPROMPT and so on.
  int completion;
};
const ConnectCall& lastConnectCall();

/// While it lives, the driver manager refuses to set this attribute of a connection, without a
/// reason.
class RefusedConnectAttribute {
 public:
  explicit RefusedConnectAttribute(int attribute);
  ~RefusedConnectAttribute();
  RefusedConnectAttribute(const RefusedConnectAttribute&) = delete;
  RefusedConnectAttribute& operator=(const RefusedConnectAttribute&) = delete;

  /// How often that happened.
  int refusals() const;
};

}  // namespace tlpacscfg::test
