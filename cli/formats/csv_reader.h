#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tlpacscfg::cli {

/// Where something begins in a text; lines and characters count from 1.
struct TextPosition {
  std::size_t line = 1;
  std::size_t column = 1;
};

struct CsvCell {
  std::string text;
  TextPosition at;
};

struct CsvError {
  TextPosition at;
  std::string message;
};

struct Csv {
  /// Without the lines that have an error, and without empty ones.
  std::vector<std::vector<CsvCell>> rows;
  std::vector<CsvError> errors;
};

/// Reads CSV (RFC 4180) in UTF-8. A byte order mark is skipped; lines end with CR LF, LF or CR. An
/// error ends its line, and reading goes on with the next one.
Csv readCsv(std::string_view text);

}  // namespace tlpacscfg::cli
