#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tlpacscfg {

/// One cell of a result: its text, or nullopt for NULL.
using Cell = std::optional<std::wstring_view>;

/// The rows of a query. The texts are stored in a few blocks: a large result needs little more
/// memory than its texts.
class Table {
 public:
  explicit Table(std::size_t columns = 0) : columns_(columns) {}

  std::size_t columns() const { return columns_; }
  std::size_t rows() const;

  /// These append a cell, row by row, and throw std::length_error for a text of 2^31 characters.
  void append(Cell cell);
  void appendAscii(std::string_view text);

  Cell at(std::size_t column, std::size_t row) const;

  void clear();

 private:
  static constexpr std::size_t kRowsInPage = 256;
  /// Set in the end of a cell that is NULL.
  static constexpr std::uint32_t kNull = 0x80000000;

  struct Page {
    /// The end of each cell in `texts`; it begins at the end of the cell before it.
    std::vector<std::uint32_t> ends;
    std::wstring texts;
  };

  bool lastPageIsFull() const;
  void addPage();
  Page& pageForCell(std::size_t characters);

  std::size_t columns_;
  std::vector<Page> pages_;
};

}  // namespace tlpacscfg
