#include "service/operations.h"

#include "service/directories.h"
#include "service/json_text.h"
#include "service/refusal.h"
#include "service/statement_process.h"
#include "support/text.h"

namespace tlpacscfg::service {
namespace {

std::string connectStringOf(const ServiceOptions& options, const std::string& database) {
  const auto found = options.databases.find(toUtf8(upperCase(fromUtf8(database))));
  if (found == options.databases.end()) {
    throw Refusal(http_status::kFailed, "There is no database '" + database + "'.");
  }
  return found->second;
}

std::string run(StatementKind kind, const Context& context, const Request& request) {
  return runInProcess(
      {kind, connectStringOf(context.options, request.utf8("database")), request.utf8("sql")},
      context.options, context.stopSignal);
}

std::string answerConnect(const Context&, const Request& request) {
  request.utf8("application");
  return R"({"service":"tlcommd","version":1})";
}

std::string answerQuery(const Context& context, const Request& request) {
  return run(StatementKind::Query, context, request);
}

std::string answerExecute(const Context& context, const Request& request) {
  return run(StatementKind::Execute, context, request);
}

std::string answerFiles(const Context& context, const Request& request) {
  if (request.truth("recurse") || request.truth("directories") || request.truth("fullPaths")) {
    throw Refusal(http_status::kFailed, "Only the names of files in one directory are listed.");
  }
  const std::vector<std::wstring> names =
      listFiles(context.options.directories, {.directory = request.text("directory"),
                                              .pattern = request.text("pattern"),
                                              .sorted = request.truth("sorted"),
                                              .ignoreCase = request.truth("ignoreCase")});
  BoundedText answer(context.options.responseBytes);
  answer += R"({"files":[)";
  for (const std::wstring& name : names) {
    if (&name != &names.front()) answer += ",";
    answer += quoted(toUtf8(name));
  }
  answer += "]}";
  return answer.take();
}

constexpr Operation kOperations[] = {
    {"/v1/connect", false, answerConnect},
    {"/v1/query", false, answerQuery},
    {"/v1/execute", true, answerExecute},
    {"/v1/files", false, answerFiles},
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
