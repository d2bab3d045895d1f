#include "cli/base/exit_code.h"

namespace tlpacscfg::cli {
namespace {

struct Row {
  ExitCode code;
  const char* meaning;
};

constexpr Row kRows[] = {
    {ExitCode::Done, "Done; for diff and --plan: there is no difference."},
    {ExitCode::Differences, "diff and --plan: there are differences."},
    {ExitCode::Usage,
     "The command line, a file that it names, or standard output cannot be used. The site is as it "
     "was."},
    {ExitCode::Findings,
     "Something is wrong with the site: check or doctor found it, or a row cannot be read."},
    {ExitCode::Conflict, "Somebody else changed a row meanwhile. Nothing was written."},
    {ExitCode::NoConnection,
     "There is no connection to the database or the service, or it was lost; 'history' finds out "
     "what became of a change."},
    {ExitCode::Refused, "The database refused a statement. Nothing was written."},
    {ExitCode::NotAsSent,
     "The change is stored otherwise than it was sent, or may be stored in spite of an error; the "
     "message says which."},
};

}  // namespace

std::string exitCodesText() {
  std::string text = "Exit codes:\n\n";
  for (const Row& row : kRows) {
    text += "  " + std::to_string(static_cast<int>(row.code)) + "  " + row.meaning + "\n";
  }
  return text;
}

}  // namespace tlpacscfg::cli
