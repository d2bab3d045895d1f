#include "service/operations.h"

#include <nlohmann/json.hpp>

#include "data/odbc/connection.h"
#include "service/directories.h"
#include "service/refusal.h"
#include "support/text.h"

namespace tlpacscfg::service {
namespace {

using nlohmann::json;

constexpr std::chrono::seconds kLoginTimeout{10};

std::string quoted(std::string text) {
  return json(std::move(text)).dump(-1, ' ', false, json::error_handler_t::replace);
}

/// A JSON text that may grow up to a limit.
class BoundedText {
 public:
  explicit BoundedText(std::size_t limit) : limit_(limit) {}

  BoundedText& operator+=(std::string_view piece) {
    if (text_.size() + piece.size() > limit_) {
      throw Refusal(http_status::kFailed, "The result is larger than the service allows.");
    }
    text_ += piece;
    return *this;
  }

  std::string take() { return std::move(text_); }

 private:
  std::size_t limit_;
  std::string text_;
};

odbc::Connection connect(const ServiceOptions& options, const Request& request) {
  const std::string& name = request.utf8("database");
  const auto found = options.databases.find(toUtf8(upperCase(fromUtf8(name))));
  if (found == options.databases.end()) {
    throw Refusal(http_status::kFailed, "There is no database '" + name + "'.");
  }
  return odbc::Connection(
      std::make_shared<odbc::Environment>(odbc::CursorLibrary::NotUsed, kLoginTimeout), L"",
      odbc::Prompt::Never, fromUtf8(found->second));
}

std::string answerConnect(const ServiceOptions&, const Request& request) {
  request.utf8("application");
  return R"({"service":"tlcommd","version":1})";
}

std::string answerQuery(const ServiceOptions& options, const Request& request) {
  const Table table = connect(options, request).query(request.text("sql"));
  BoundedText answer(options.responseBytes);
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

std::string answerExecute(const ServiceOptions& options, const Request& request) {
  connect(options, request).execute(request.text("sql"));
  return R"({"done":true})";
}

std::string answerFiles(const ServiceOptions& options, const Request& request) {
  if (request.truth("recurse") || request.truth("directories") || request.truth("fullPaths")) {
    throw Refusal(http_status::kFailed, "Only the names of files in one directory are listed.");
  }
  const std::vector<std::wstring> names =
      listFiles(options.directories, {.directory = request.text("directory"),
                                      .pattern = request.text("pattern"),
                                      .sorted = request.truth("sorted"),
                                      .ignoreCase = request.truth("ignoreCase")});
  BoundedText answer(options.responseBytes);
  answer += R"({"files":[)";
  for (const std::wstring& name : names) {
    if (&name != &names.front()) answer += ",";
    answer += quoted(toUtf8(name));
  }
  answer += "]}";
  return answer.take();
}

constexpr Operation kOperations[] = {
    {"/v1/connect", answerConnect},
    {"/v1/query", answerQuery},
    {"/v1/execute", answerExecute},
    {"/v1/files", answerFiles},
};

}  // namespace

const Operation* findOperation(const std::string& path) {
  for (const Operation& operation : kOperations) {
    if (path == operation.path) return &operation;
  }
  return nullptr;
}

std::string errorText(const std::string& reason) { return "{\"error\":" + quoted(reason) + "}"; }

}  // namespace tlpacscfg::service
