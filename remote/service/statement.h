#pragma once

#include <chrono>
#include <cstddef>
#include <string>

namespace tlpacscfg::service {

enum class StatementKind { Query, Execute };

struct Statement {
  StatementKind kind = StatementKind::Query;
  std::string connectString;
  std::string sql;
};

struct StatementLimits {
  std::chrono::seconds time{60};  ///< Drivers without time limits ignore it.
  std::size_t answerBytes = 0;
};

/// Runs the statement on a connection of its own and returns the answer as JSON. Throws Refusal,
/// RunTimeError for an error of the database, odbc::ResultTooLarge, or std::bad_alloc.
std::string run(const Statement& statement, const StatementLimits& limits);

}  // namespace tlpacscfg::service
