#pragma once

#include <chrono>
#include <cstddef>
#include <string>

#include "service/directories.h"
#include "service/request.h"

namespace tlpacscfg::service {

/// A job is work at which a driver or a disk may hang; as JSON it is a flat object.
enum class StatementKind {
  Query,
  Read,  ///< A query of which no change stays.
  Execute
};

struct Statement {
  StatementKind kind = StatementKind::Query;
  std::string connectString;
  /// Where the database has its files; may be empty.
  std::string directory;
  std::string sql;
};

std::string jobOf(const Statement& statement);
std::string jobOf(const FileQuery& query);

struct JobLimits {
  std::chrono::seconds time{60};  ///< Drivers without time limits ignore it.
  std::size_t answerBytes = 0;
};

/// Does a job, the only one of this process, and returns the answer as JSON. Throws Refusal,
/// RunTimeError for an error of the database, odbc::ResultTooLarge, or std::bad_alloc.
std::string perform(const Request& job, const JobLimits& limits);

}  // namespace tlpacscfg::service
