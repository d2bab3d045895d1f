#include "service/statement.h"

#include <memory>

#include "odbc/connection.h"
#include "service/json_text.h"
#include "support/text.h"

namespace tlpacscfg::service {
namespace {

constexpr std::chrono::seconds kLoginTimeout{10};

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

}  // namespace

std::string run(const Statement& statement, const StatementLimits& limits) {
  odbc::Connection connection(
      std::make_shared<odbc::Environment>(odbc::CursorLibrary::NotUsed, kLoginTimeout), L"",
      odbc::Prompt::Never, fromUtf8(statement.connectString));
  connection.limitStatements({.time = limits.time, .resultCharacters = limits.answerBytes});
  const std::wstring sql = fromUtf8(statement.sql);
  if (statement.kind == StatementKind::Query) {
    return answerOf(connection.queryOnce(sql), limits.answerBytes);
  }
  connection.execute(sql);
  return R"({"done":true})";
}

}  // namespace tlpacscfg::service
