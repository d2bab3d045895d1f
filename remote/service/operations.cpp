#include "service/operations.h"

#include "odbc/only_reads.h"
#include "service/directories.h"
#include "service/job.h"
#include "service/json_text.h"
#include "service/refusal.h"
#include "support/text.h"

namespace tlpacscfg::service {
namespace {

std::string run(StatementKind kind, const Context& context, const Request& request) {
  const std::string& name = request.utf8("database");
  const auto found = context.options.databases.find(toUtf8(upperCase(fromUtf8(name))));
  if (found == context.options.databases.end()) {
    throw Refusal(http_status::kFailed, "There is no database '" + name + "'.");
  }
  const Database& database = found->second;
  return context.jobs.run(
      jobOf({kind, database.connectString, database.directory, request.utf8("sql")}));
}

std::string answerConnect(const Context&, const Request& request) {
  request.utf8("application");
  return R"({"service":"tlcommd","version":1})";
}

std::string answerQuery(const Context& context, const Request& request) {
  if (context.rights == Rights::ReadAndWrite) return run(StatementKind::Query, context, request);
  // A text could end the transaction that is to be rolled back.
  if (!onlyReads(request.text("sql"))) throw onlyPlainQueries();
  return run(StatementKind::Read, context, request);
}

std::string answerExecute(const Context& context, const Request& request) {
  return run(StatementKind::Execute, context, request);
}

std::string answerFiles(const Context& context, const Request& request) {
  if (request.truth("recurse") || request.truth("directories") || request.truth("fullPaths")) {
    throw Refusal(http_status::kFailed, "Only the names of files in one directory are listed.");
  }
  return context.jobs.run(
      jobOf({.place = placeOf(context.options.directories, request.text("directory")),
             .pattern = request.text("pattern"),
             .sorted = request.truth("sorted"),
             .ignoreCase = request.truth("ignoreCase")}));
}

std::string answerStatus(const Context& context, const Request&) { return context.metrics.text(); }

constexpr Operation kOperations[] = {
    {"/v1/connect", false, answerConnect}, {"/v1/query", false, answerQuery},
    {"/v1/execute", true, answerExecute},  {"/v1/files", false, answerFiles},
    {"/v1/status", false, answerStatus},
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
