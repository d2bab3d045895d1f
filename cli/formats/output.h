#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "cli/base/option.h"

namespace tlpacscfg::cli {

/// How results are written to standard output.
struct OutputOptions {
  bool json = false;
  bool csv = false;
  bool byteOrderMark = false;
};

/// The lines of the option table that fill it.
std::vector<Option> optionsOf(OutputOptions& options);

/// Null, a truth value, a number, or a text in UTF-8.
using Value = std::variant<std::monostate, bool, std::int64_t, std::string>;

/// Rows for a reader (aligned), for a spreadsheet (CSV) or for a program (JSON).
struct Listing {
  /// Names the members of each row in JSON, and with `heading` the columns elsewhere.
  struct Column {
    std::string name;
    std::string heading;
  };

  /// The kind of document, for its "schema": "workstations".
  std::string kind;
  std::vector<Column> columns;
  std::vector<std::vector<Value>> rows;

  /// Appends a row of these values, which are moved into it.
  template <class... Values>
  void add(Values&&... values) {
    std::vector<Value>& row = rows.emplace_back();
    row.reserve(sizeof...(values));
    (row.emplace_back(std::forward<Values>(values)), ...);
  }
};

/// Writes to standard output. In text, `none` stands for a listing without rows.
void write(const Listing& listing, const OutputOptions& options, std::string_view none = "");

/// Throws Failure unless all that was written to standard output arrives.
void flushOutput();

/// The text of a value; empty for null.
std::string textOf(const Value& value);

/// "tlpacscfg/workstations/1": what a program checks before it reads a JSON document.
std::string schemaOf(std::string_view kind);

/// A row of CSV (RFC 4180) with its line end.
std::string csvLine(const std::vector<std::string>& cells);

/// The number of columns that a text takes on a terminal.
std::size_t widthOf(std::string_view utf8);

}  // namespace tlpacscfg::cli
