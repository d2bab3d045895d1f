#include "cli/formats/output.h"

#include <algorithm>
#include <iostream>
#include <nlohmann/json.hpp>

#include "cli/base/console.h"
#include "cli/base/failure.h"

namespace tlpacscfg::cli {
namespace {

using nlohmann::ordered_json;

ordered_json jsonOf(const Value& value) {
  if (const auto* truth = std::get_if<bool>(&value)) return *truth;
  if (const auto* number = std::get_if<std::int64_t>(&value)) return *number;
  if (const auto* text = std::get_if<std::string>(&value)) return *text;
  return nullptr;
}

void writeJson(const Listing& listing) {
  ordered_json rows = ordered_json::array();
  for (const std::vector<Value>& row : listing.rows) {
    ordered_json object = ordered_json::object();
    for (std::size_t i = 0; i < row.size(); ++i) {
      object[listing.columns[i].name] = jsonOf(row[i]);
    }
    rows.push_back(std::move(object));
  }
  const ordered_json document = {{"schema", schemaOf(listing.kind)}, {listing.kind, rows}};
  std::cout << document.dump(2) << '\n';
}

void writeCsv(const Listing& listing, bool byteOrderMark) {
  if (byteOrderMark) std::cout << "\xEF\xBB\xBF";
  std::vector<std::string> cells;
  for (const Listing::Column& column : listing.columns) cells.push_back(column.name);
  std::cout << csvLine(cells);
  for (const std::vector<Value>& row : listing.rows) {
    std::ranges::transform(row, cells.begin(), [](const Value& value) { return textOf(value); });
    std::cout << csvLine(cells);
  }
}

/// A line break or another control character would break the table.
std::string inOneLine(std::string text) {
  std::ranges::replace_if(
      text, [](char c) { return static_cast<unsigned char>(c) < 0x20; }, ' ');
  return text;
}

void writeText(const Listing& listing) {
  std::vector<std::size_t> widths;
  for (const Listing::Column& column : listing.columns) widths.push_back(widthOf(column.heading));
  for (const std::vector<Value>& row : listing.rows) {
    for (std::size_t i = 0; i < row.size(); ++i) {
      const auto* const text = std::get_if<std::string>(&row[i]);
      widths[i] = std::max(widths[i], text != nullptr ? widthOf(*text) : textOf(row[i]).size());
    }
  }
  const auto line = [&](auto cellOf) {
    std::string text;
    std::size_t gap = 0;
    for (std::size_t i = 0; i < widths.size(); ++i) {
      const std::string cell = inOneLine(cellOf(i));
      if (!cell.empty()) text.append(gap, ' ').append(cell);
      gap = (cell.empty() ? gap : 0) + widths[i] - widthOf(cell) + 2;
    }
    return text + '\n';
  };
  const bool bold = usesColours();
  const std::string heading = line([&](std::size_t i) { return listing.columns[i].heading; });
  std::cout << (bold ? "\x1B[1m" + heading.substr(0, heading.size() - 1) + "\x1B[0m\n" : heading);
  for (const std::vector<Value>& row : listing.rows) {
    std::cout << line([&](std::size_t i) { return textOf(row[i]); });
  }
}

}  // namespace

std::vector<Option> optionsOf(OutputOptions& options) {
  return {
      {"--json", "", "Write the result as JSON", &options.json},
      {"--csv", "", "Write the result as CSV (RFC 4180, UTF-8)", &options.csv},
      {"--bom", "", "Begin CSV with a byte order mark, for spreadsheets", &options.byteOrderMark},
  };
}

void write(const Listing& listing, const OutputOptions& options, std::string_view none) {
  if (options.json) return writeJson(listing);
  if (options.csv) return writeCsv(listing, options.byteOrderMark);
  if (!listing.rows.empty()) return writeText(listing);
  if (!none.empty()) std::cout << none << '\n';
}

void flushOutput() {
  std::cout.flush();
  if (!std::cout) throw Failure(ExitCode::Usage, "Standard output cannot be written.");
}

std::string textOf(const Value& value) {
  if (const auto* truth = std::get_if<bool>(&value)) return *truth ? "yes" : "no";
  if (const auto* number = std::get_if<std::int64_t>(&value)) return std::to_string(*number);
  if (const auto* text = std::get_if<std::string>(&value)) return *text;
  return {};
}

std::string schemaOf(std::string_view kind) { return "tlpacscfg/" + std::string(kind) + "/1"; }

std::string csvLine(const std::vector<std::string>& cells) {
  std::string line;
  for (std::size_t i = 0; i < cells.size(); ++i) {
    if (i > 0) line += ',';
    if (cells[i].find_first_of(",\"\r\n") == std::string::npos) {
      line += cells[i];
      continue;
    }
    line += '"';
    for (const char letter : cells[i]) line.append(letter == '"' ? 2 : 1, letter);
    line += '"';
  }
  return line + "\r\n";
}

std::size_t widthOf(std::string_view utf8) {
  return static_cast<std::size_t>(std::ranges::count_if(
      utf8, [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0) != 0x80; }));
}

}  // namespace tlpacscfg::cli
