#include "service/job.h"

#include <cstdlib>
#include <initializer_list>
#include <memory>
#include <optional>
#include <utility>

#include "odbc/connection.h"
#include "service/confinement.h"
#include "service/json_text.h"
#include "support/text.h"

namespace tlpacscfg::service {
namespace {

constexpr std::chrono::seconds kLoginTimeout{10};

constexpr const char* kQuery = "query";
constexpr const char* kRead = "read";
constexpr const char* kExecute = "execute";
constexpr const char* kFiles = "files";

std::string flatObject(std::initializer_list<std::pair<const char*, std::string>> members) {
  std::string text;
  for (const auto& [name, value] : members) {
    text += (text.empty() ? "{" : ",") + quoted(name) + ":" + value;
  }
  return text + "}";
}

const char* nameOf(StatementKind kind) {
  switch (kind) {
    case StatementKind::Query:
      return kQuery;
    case StatementKind::Read:
      return kRead;
    case StatementKind::Execute:
      break;
  }
  return kExecute;
}

const char* truth(bool value) { return value ? "true" : "false"; }

std::string answerOf(const Table& table, std::size_t maxBytes) {
  BoundedText answer(maxBytes);
  answer += R"({"tables":[)";
  if (table.columns() > 0) {
    answer += R"({"columns":)" + std::to_string(table.columns()) + R"(,"rows":[)";
    for (std::size_t row = 0; row < table.rows(); ++row) {
      answer += row == 0 ? "[" : ",[";
      for (std::size_t column = 0; column < table.columns(); ++column) {
        if (column > 0) answer += ",";
        const Cell cell = table.at(column, row);
        answer += cell ? quoted(toUtf8(*cell)) : "null";
      }
      answer += "]";
    }
    answer += "]}";
  }
  answer += "]}";
  return answer.take();
}

std::string answerOf(const std::vector<std::wstring>& names, std::size_t maxBytes) {
  BoundedText answer(maxBytes);
  answer += R"({"files":[)";
  for (const std::wstring& name : names) {
    if (&name != &names.front()) answer += ",";
    answer += quoted(toUtf8(name));
  }
  answer += "]}";
  return answer.take();
}

std::string list(const Request& job, const JobLimits& limits) {
  const std::string& root = job.utf8("root");
  confine(root, Access::List);
  return answerOf(listFiles({.place = {root, job.text("below")},
                             .pattern = job.text("pattern"),
                             .sorted = job.truth("sorted"),
                             .ignoreCase = job.truth("ignoreCase")}),
                  limits.answerBytes);
}

std::string run(const Request& job, const JobLimits& limits) {
  const std::string& directory = job.utf8("directory");
  // Otherwise SQLite would choose a directory that it cannot use afterwards.
  if (!directory.empty()) setenv("SQLITE_TMPDIR", directory.c_str(), 1);
  odbc::Connection connection(
      std::make_shared<odbc::Environment>(odbc::CursorLibrary::NotUsed, kLoginTimeout), L"",
      odbc::Prompt::Never, job.text("connect"));
  connection.limitStatements({.time = limits.time, .resultCharacters = limits.answerBytes});
  // Drivers read configuration and libraries from anywhere while they connect; the statement of a
  // client runs only afterwards.
  confine(directory, Access::ReadAndWrite);
  const std::wstring sql = job.text("sql");
  const std::string& kind = job.utf8("job");
  if (kind == kExecute) {
    connection.execute(sql);
    return R"({"done":true})";
  }
  std::optional<odbc::Connection::Transaction> rolledBack;
  if (kind == kRead) rolledBack.emplace(connection);
  return answerOf(connection.queryOnce(sql), limits.answerBytes);
}

}  // namespace

std::string jobOf(const Statement& statement) {
  return flatObject({{"job", quoted(nameOf(statement.kind))},
                     {"connect", quoted(statement.connectString)},
                     {"directory", quoted(statement.directory)},
                     {"sql", quoted(statement.sql)}});
}

std::string jobOf(const FileQuery& query) {
  return flatObject({{"job", quoted(kFiles)},
                     {"root", quoted(query.place.root)},
                     {"below", quoted(toUtf8(query.place.below))},
                     {"pattern", quoted(toUtf8(query.pattern))},
                     {"sorted", truth(query.sorted)},
                     {"ignoreCase", truth(query.ignoreCase)}});
}

std::string perform(const Request& job, const JobLimits& limits) {
  return job.utf8("job") == kFiles ? list(job, limits) : run(job, limits);
}

}  // namespace tlpacscfg::service
