#include "cli/formats/csv_reader.h"

#include <optional>
#include <utility>

namespace tlpacscfg::cli {
namespace {

/// The bytes of the character that the text begins with; 0 when they are not UTF-8.
std::size_t characterLength(std::string_view text) {
  const auto byte = [&](std::size_t i) {
    return i < text.size() ? static_cast<unsigned char>(text[i]) : 0U;
  };
  const auto continues = [&](std::size_t i) { return (byte(i) & 0xC0U) == 0x80; };
  const unsigned first = byte(0), second = byte(1);
  if (first < 0x80) return 1;
  if (first >= 0xC2 && first <= 0xDF) return continues(1) ? 2 : 0;
  if (first >= 0xE0 && first <= 0xEF) {
    const bool overlong = first == 0xE0 && second < 0xA0;
    const bool surrogate = first == 0xED && second > 0x9F;
    return continues(1) && continues(2) && !overlong && !surrogate ? 3 : 0;
  }
  if (first >= 0xF0 && first <= 0xF4) {
    const bool overlong = first == 0xF0 && second < 0x90;
    const bool tooLarge = first == 0xF4 && second > 0x8F;
    return continues(1) && continues(2) && continues(3) && !overlong && !tooLarge ? 4 : 0;
  }
  return 0;
}

class Reader {
 public:
  explicit Reader(std::string_view text) : text_(text) {}

  Csv read() {
    while (!atEnd()) readLine();
    return std::move(csv_);
  }

 private:
  bool atEnd() const { return at_ == text_.size(); }
  char next() const { return text_[at_]; }
  bool atLineEnd() const { return atEnd() || next() == '\n' || next() == '\r'; }

  /// Takes one character into the cell, or false after an error.
  bool take(std::string& cell) {
    const std::size_t length = characterLength(text_.substr(at_));
    if (length == 0) return fail(position_, "This is not UTF-8.");
    if (next() == '\0') return fail(position_, "There is a NUL character.");
    cell += text_.substr(at_, length);
    at_ += length;
    ++position_.column;
    return true;
  }

  /// CR LF counts as one.
  void skipLineEnd(std::string* cell = nullptr) {
    const std::size_t length = text_.substr(at_).starts_with("\r\n") ? 2 : 1;
    if (cell != nullptr) *cell += text_.substr(at_, length);
    at_ += length;
    position_ = {position_.line + 1, 1};
  }

  bool fail(TextPosition at, std::string message) {
    csv_.errors.push_back({at, std::move(message)});
    return false;
  }

  bool readQuoted(CsvCell& cell) {
    ++at_;
    ++position_.column;
    while (!atEnd()) {
      if (atLineEnd()) {
        skipLineEnd(&cell.text);
      } else if (next() != '"') {
        if (!take(cell.text)) return false;
      } else if (text_.substr(at_).starts_with("\"\"")) {
        cell.text += '"';
        at_ += 2;
        position_.column += 2;
      } else {
        ++at_;
        ++position_.column;
        if (atLineEnd() || next() == ',') return true;
        return fail(position_, "After the closing quote there must be a comma or the line's end.");
      }
    }
    return fail(cell.at, "The quote that begins here is not closed.");
  }

  bool readPlain(CsvCell& cell) {
    while (!atLineEnd() && next() != ',') {
      if (next() == '"') {
        return fail(position_, "A cell with a quote must be in quotes, with the quote doubled.");
      }
      if (!take(cell.text)) return false;
    }
    return true;
  }

  bool readCells(std::vector<CsvCell>& row) {
    for (;;) {
      CsvCell& cell = row.emplace_back(CsvCell{{}, position_});
      const bool quoted = !atEnd() && next() == '"';
      if (quoted ? !readQuoted(cell) : !readPlain(cell)) return false;
      if (atLineEnd()) return true;
      ++at_;
      ++position_.column;
    }
  }

  void readLine() {
    std::vector<CsvCell> row;
    const bool whole = readCells(row);
    while (!atLineEnd()) ++at_;
    if (!atEnd()) skipLineEnd();
    const bool empty = row.size() == 1 && row.front().text.empty();
    if (whole && !empty) csv_.rows.push_back(std::move(row));
  }

  std::string_view text_;
  std::size_t at_ = 0;
  TextPosition position_;
  Csv csv_;
};

}  // namespace

Csv readCsv(std::string_view text) { return Reader(text).read(); }

}  // namespace tlpacscfg::cli
