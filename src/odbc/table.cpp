#include "odbc/table.h"

#include <stdexcept>
#include <utility>

namespace tlpacscfg {

std::size_t Table::rows() const {
  if (pages_.empty() || columns_ == 0) return 0;
  return (pages_.size() - 1) * kRowsInPage + pages_.back().ends.size() / columns_;
}

bool Table::lastPageIsFull() const {
  return pages_.empty() || pages_.back().ends.size() == kRowsInPage * columns_;
}

void Table::addPage() {
  Page page;
  if (!pages_.empty()) {
    // The rows of a result have similar sizes.
    page.ends.reserve(pages_.back().ends.size());
    page.texts.reserve(pages_.back().texts.size() * 9 / 8);
  }
  pages_.push_back(std::move(page));
}

Table::Page& Table::pageForCell(std::size_t characters) {
  if (lastPageIsFull()) addPage();
  Page& page = pages_.back();
  if (characters >= kNull - page.texts.size()) throw std::length_error("A text is too long.");
  return page;
}

void Table::append(Cell cell) {
  Page& page = pageForCell(cell ? cell->size() : 0);
  if (cell) page.texts.append(*cell);
  page.ends.push_back(static_cast<std::uint32_t>(page.texts.size()) | (cell ? 0 : kNull));
}

void Table::appendAscii(std::string_view text) {
  Page& page = pageForCell(text.size());
  for (const char letter : text) page.texts.push_back(static_cast<wchar_t>(letter));
  page.ends.push_back(static_cast<std::uint32_t>(page.texts.size()));
}

Cell Table::at(std::size_t column, std::size_t row) const {
  const Page& page = pages_.at(row / kRowsInPage);
  const std::size_t index = row % kRowsInPage * columns_ + column;
  const std::uint32_t end = page.ends.at(index);
  if ((end & kNull) != 0) return std::nullopt;
  const std::uint32_t start = index == 0 ? 0 : page.ends[index - 1] & ~kNull;
  return std::wstring_view(page.texts).substr(start, end - start);
}

void Table::clear() { pages_.clear(); }

}  // namespace tlpacscfg
