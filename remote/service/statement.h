#pragma once

#include <chrono>
#include <cstddef>
#include <string>

namespace tlpacscfg::service {

enum class StatementKind { Query, Execute };

/// A text for a database.
struct Statement {
  StatementKind kind = StatementKind::Query;
  std::string connectString;
  std::string sql;
};

struct StatementLimits {
  std::chrono::seconds time{60};  ///< For drivers that heed it.
  std::size_t answerBytes = 0;
};

/// Runs the text on a connection of its own and gives the answer in JSON. Throws Refusal,
/// RunTimeError when the database refuses, odbc::ResultTooLarge, or std::bad_alloc.
std::string run(const Statement& statement, const StatementLimits& limits);

}  // namespace tlpacscfg::service
