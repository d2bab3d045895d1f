#include <string>
#include <vector>

#include "cli/formats/csv_reader.h"
#include "cli/formats/output.h"
#include "fuzz/fuzz_tools.h"
#include "support/text.h"

using namespace tlpacscfg;
using fuzz::require;

namespace {

bool isBefore(const cli::TextPosition& first, const cli::TextPosition& second) {
  return first.line < second.line || (first.line == second.line && first.column < second.column);
}

std::vector<std::string> textsOf(const std::vector<cli::CsvCell>& row) {
  std::vector<std::string> texts;
  for (const cli::CsvCell& cell : row) texts.push_back(cell.text);
  return texts;
}

void checkPositions(const cli::Csv& csv) {
  cli::TextPosition last{.line = 0, .column = 0};
  for (const auto& row : csv.rows) {
    for (const cli::CsvCell& cell : row) {
      require(isBefore(last, cell.at), "cells follow each other");
      last = cell.at;
    }
  }
}

void checkWrittenAgain(const cli::Csv& csv) {
  std::string written;
  for (const auto& row : csv.rows) written += cli::csvLine(textsOf(row));
  const cli::Csv again = cli::readCsv(written);
  require(again.errors.empty(), "what is written can be read");
  require(again.rows.size() == csv.rows.size(), "no row is lost");
  for (std::size_t i = 0; i < csv.rows.size(); ++i) {
    require(textsOf(again.rows[i]) == textsOf(csv.rows[i]), "every cell stays as it is");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  const cli::Csv csv = cli::readCsv(text);
  checkPositions(csv);
  for (const auto& row : csv.rows) {
    for (const std::string& cell : textsOf(row)) {
      require(toUtf8(fromUtf8(cell)) == cell, "a cell is UTF-8");
    }
  }
  // A mark at the beginning of the first cell would be skipped again.
  if (!csv.rows.empty() && csv.rows.front().front().text.starts_with("\xEF\xBB\xBF")) return 0;
  checkWrittenAgain(csv);
  return 0;
}
