#pragma once

#include <gtest/gtest.h>

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

/// The answers of a scripted client and a record of its calls. A method without a scripted answer
/// succeeds with an empty result.
struct ClientScript {
  bool connects = true;
  std::int32_t tableCount = 1;
  Table table;
  bool executes = true;
  /// Statements that contain this text fail too, and the next CheckForError returns the reason.
  std::wstring refused;
  std::wstring reason;
  /// Executes a statement that is not refused. Its exceptions leave the method.
  std::function<void(const std::wstring& sql)> execute;
  std::vector<std::wstring> files;
  /// The results of CheckForError in order; then the empty text.
  std::deque<std::wstring> errors;
  /// Methods that fail when they are called.
  std::vector<std::wstring> failing;
  /// Called with the name of every method that is called. Its exceptions leave the method.
  std::function<void(const std::wstring& method)> listener;
  /// Answers by statement; without one, `tableCount` and `table` count.
  std::function<std::optional<Table>(const std::wstring& sql)> answer;

  /// "Method(argument, ...)" in the order of the calls.
  std::vector<std::wstring> calls;
  int created = 0;
  int destroyed = 0;
};

/// Makes createTlCommClient create clients that follow the script. The fixture restores it.
std::shared_ptr<ClientScript> installFakeClient();

/// The same, connected, with no calls recorded yet.
std::shared_ptr<ClientScript> connectFakeClient(const std::wstring& database = L"site");

/// The same, with a client that works on the database of the data source TlTestSite.
std::shared_ptr<ClientScript> connectSiteClient();

/// The way to the data that a test takes, and its name.
enum class Path { Direct, Remote };
inline std::string pathName(const ::testing::TestParamInfo<Path>& path) {
  return path.param == Path::Direct ? "Direct" : "Remote";
}

}  // namespace tlpacscfg::test
