#include "cli/formats/assignments_csv.h"

#include <vector>

#include "support/text.h"

namespace tlpacscfg::cli {
namespace {

bool isHeader(const std::vector<CsvCell>& row) {
  return row.size() == 2 && equalIgnoringCase(fromUtf8(trimmed(row[0])), L"workstation") &&
         equalIgnoringCase(fromUtf8(trimmed(row[1])), L"configuration");
}

/// What spreadsheets and 'list' make of the first line.
std::string whyNot(const std::vector<CsvCell>& row) {
  if (row.size() > 2) return " Keep only these two columns.";
  const bool semicolon = row.front().text.find(';') != std::string::npos;
  return semicolon ? " Commas, not semicolons, separate the cells." : "";
}

}  // namespace

std::string trimmed(const CsvCell& cell) {
  const std::size_t first = cell.text.find_first_not_of(" \t");
  if (first == std::string::npos) return {};
  return cell.text.substr(first, cell.text.find_last_not_of(" \t") - first + 1);
}

std::optional<CsvError> headerError(const Csv& csv) {
  const std::string message = "The first line must be 'workstation,configuration'.";
  if (csv.rows.empty()) return CsvError{{}, message};
  const std::vector<CsvCell>& first = csv.rows.front();
  if (isHeader(first)) return std::nullopt;
  return CsvError{first.front().at, message + whyNot(first)};
}

std::string namedTwice(const std::string& workstation, std::size_t earlierLine) {
  return "The workstation '" + workstation + "' stands in line " + std::to_string(earlierLine) +
         " already.";
}

}  // namespace tlpacscfg::cli
