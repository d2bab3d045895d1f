#include "cli/commands/examinations.h"

#include "cli/connection/site_connection.h"
#include "data/data_path.h"
#include "support/runtime_error.h"
#include "support/text.h"

namespace tlpacscfg::cli {

std::vector<Examination> examinations() {
  return {{"connection", examineConnection},
          {"login", examineLogin},
          {"encryption", examineEncryption},
          {"login language", examineLanguage},
          {"collation", examineCollation},
          {"tables", examineRows},
          {"offline marks", examineOfflineMarks},
          {"column types", examineColumnTypes},
          {"unique keys", examineKeys},
          {"ports", examinePorts},
          {"clock", examineClock},
          {"INI file", examineIniFile},
          {"prompts folder", examinePromptsFolder}};
}

std::optional<Table> tryQuery(const std::wstring& sql) {
  try {
    return loadingPath().query(sql);
  } catch (const RunTimeError& error) {
    const Failure failure = failureOf(error);
    if (failure.code() == ExitCode::NoConnection) throw failure;
    return std::nullopt;
  }
}

std::optional<std::string> tryValue(const std::wstring& sql) {
  const auto rows = tryQuery(sql);
  if (!rows || rows->rows() == 0) return std::nullopt;
  const Cell cell = rows->at(0, 0);
  return cell ? std::optional<std::string>(toUtf8(*cell)) : std::nullopt;
}

Symptom unseen(const std::string& subject) {
  return {Health::Warning, subject, "cannot be seen",
          "The login may not see it; ask an administrator."};
}

}  // namespace tlpacscfg::cli
