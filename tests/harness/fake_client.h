#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "data/tl_comm_client.h"

namespace tlpacscfg::test {

using Cells = std::vector<std::optional<std::wstring>>;

/// A table of the given rows, all of the same length.
Table tableOf(const std::vector<Cells>& rows);

/// What a scripted client answers, and what it was asked. A method with nothing scripted succeeds
/// and finds nothing.
struct ClientScript {
  bool connects = true;
  std::int32_t tableCount = 1;
  Table table;
  bool executes = true;
  /// Statements that contain this text are not executed either, and the next CheckForError gives
  /// the reason.
  std::wstring refused;
  std::wstring reason;
  /// Executes a statement that is not refused; what it throws, the method throws.
  std::function<void(const std::wstring& sql)> execute;
  std::vector<std::wstring> files;
  /// The answers to CheckForError, one after the other; then the empty text.
  std::deque<std::wstring> errors;
  /// Methods that fail when they are called.
  std::vector<std::wstring> failing;
  /// Hears the name of every method that is called; what it throws, the method throws.
  std::function<void(const std::wstring& method)> listener;
  /// Answers by statement; without one, `tableCount` and `table` count.
  std::function<std::optional<Table>(const std::wstring& sql)> answer;

  /// "Method(argument, ...)" in the order of the calls.
  std::vector<std::wstring> calls;
  int created = 0;
  int destroyed = 0;
};

/// Lets createTlCommClient create clients that follow the script. The fixture restores the door.
std::shared_ptr<ClientScript> installFakeClient();

/// The same, and connected, with nothing noted yet.
std::shared_ptr<ClientScript> connectFakeClient(const std::wstring& database = L"site");

/// The same, with the database behind the data source TlTestSite at the client's other end.
std::shared_ptr<ClientScript> connectSiteClient();

}  // namespace tlpacscfg::test
