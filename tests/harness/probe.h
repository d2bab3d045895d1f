#pragma once

#include <optional>
#include <string>
#include <vector>

namespace tlpacscfg::test {

using ProbeRow = std::vector<std::optional<std::wstring>>;
using ProbeRows = std::vector<ProbeRow>;

/// Changes nothing, but fails while another transaction holds the rows of a site.
inline constexpr const wchar_t* kHarmlessChange =
    L"UPDATE System_pc_names SET access_string = access_string";

std::wstring asText(const ProbeRows& rows);

/// Access to a database without the component's data layer: every call opens and closes a
/// connection of its own. Throws std::runtime_error.
class Probe {
 public:
  explicit Probe(std::wstring connectString) : connectString_(std::move(connectString)) {}

  /// Runs the statements one by one on one connection, in one transaction.
  void runAll(const std::vector<std::wstring>& statements) const;
  void run(const std::wstring& statement) const { runAll({statement}); }

  ProbeRows rows(const std::wstring& statement) const;
  /// The first cell of the first row.
  std::optional<std::wstring> value(const std::wstring& statement) const;
  /// All rows, a line each; NULL differs from the empty text.
  std::wstring text(const std::wstring& statement) const;

 private:
  std::wstring connectString_;
};

}  // namespace tlpacscfg::test
