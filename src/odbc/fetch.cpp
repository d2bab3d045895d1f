#include "odbc/fetch.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace tlpacscfg::odbc {
namespace {

constexpr std::size_t kMinWidth = 32;           ///< Characters: holds any number or date.
constexpr std::size_t kMaxInitialWidth = 4000;  ///< Characters; grows when a cell is longer.
constexpr std::size_t kBlockBytes = 1 << 20;
constexpr std::size_t kMaxRows = 2000;
constexpr std::size_t kCellCharacters = 3;  ///< Added to the text of each cell when it is counted.

/// Whole numbers arrive in plain ASCII, which spares the driver a conversion; texts in UTF-16.
enum class Encoding { Ascii, Utf16 };

struct Column {
  Encoding encoding = Encoding::Utf16;
  std::size_t width = 0;       ///< Characters, the terminator included.
  std::size_t boundWidth = 0;  ///< That of the buffer, while a longer cell has been met.
  std::vector<char> texts;
  std::vector<SQLLEN> lengths;

  std::size_t characterBytes() const { return encoding == Encoding::Ascii ? 1 : sizeof(SQLWCHAR); }
  std::size_t bytes() const { return width * characterBytes(); }
};

Encoding encodingOf(SQLSMALLINT type) {
  switch (type) {
    case SQL_TINYINT:
    case SQL_SMALLINT:
    case SQL_INTEGER:
    case SQL_BIGINT:
      return Encoding::Ascii;
    default:
      return Encoding::Utf16;
  }
}

/// What the cells of a result may still hold.
class Budget {
 public:
  explicit Budget(std::size_t characters) : left_(characters) {}

  void takeCell(std::size_t characters) {
    if (characters > left_ || left_ - characters < kCellCharacters) throw ResultTooLarge();
    left_ -= characters + kCellCharacters;
  }
  std::size_t left() const { return left_; }

 private:
  std::size_t left_;
};

void append(Table& table, std::u16string_view text) {
  if constexpr (sizeof(wchar_t) == sizeof(SQLWCHAR)) {
    table.append(std::wstring_view(reinterpret_cast<const wchar_t*>(text.data()), text.size()));
  } else {
    table.append(fromUtf16(text));
  }
}

class BlockFetch {
 public:
  BlockFetch(const StatementHandle& statement, RowArrays rowArrays, std::size_t maxCharacters)
      : statement_(statement), rowArrays_(rowArrays), maxCharacters_(maxCharacters) {
    columns_.resize(columnCount(statement));
    for (std::size_t i = 0; i < columns_.size(); ++i) describe(i);
  }

  /// The statement outlives the buffers: the driver must not write into them any more.
  ~BlockFetch() {
    SQLFreeStmt(statement_.get(), SQL_UNBIND);
    if (rowArrays_ == RowArrays::Unsupported) return;
    SQLSetStmtAttrW(statement_.get(), SQL_ATTR_ROW_STATUS_PTR, nullptr, 0);
    SQLSetStmtAttrW(statement_.get(), SQL_ATTR_ROWS_FETCHED_PTR, nullptr, 0);
  }
  BlockFetch(const BlockFetch&) = delete;
  BlockFetch& operator=(const BlockFetch&) = delete;

  /// False when a cell did not fit; the widths have then grown.
  bool fetch(Table& table) {
    bind();
    table = Table(columns_.size());
    Budget budget(maxCharacters_);
    bool complete = true;
    for (;;) {
      const SQLRETURN code = SQLFetch(statement_.get());
      if (code == SQL_NO_DATA) return complete;
      statement_.verify(code);
      const std::size_t rows = rowArrays_ == RowArrays::Supported ? fetched_ : 1;
      for (std::size_t row = 0; row < rows; ++row) {
        if (rowArrays_ == RowArrays::Supported && status_[row] == SQL_ROW_ERROR) {
          fail(SQL_HANDLE_STMT, statement_.get());
        }
        for (Column& column : columns_) complete = append(column, row, table, budget) && complete;
      }
    }
  }

  void close() { statement_.verify(SQLFreeStmt(statement_.get(), SQL_CLOSE)); }

 private:
  void describe(std::size_t index) {
    SQLULEN size = 0;
    SQLSMALLINT nameLength = 0, type = 0, digits = 0, nullable = 0;
    statement_.verify(SQLDescribeColW(statement_.get(), static_cast<SQLUSMALLINT>(index + 1),
                                      nullptr, 0, &nameLength, &type, &size, &digits, &nullable));
    columns_[index].encoding = encodingOf(type);
    columns_[index].width = std::clamp<std::size_t>(size, kMinWidth, kMaxInitialWidth) + 1;
  }

  void bind() {
    std::size_t rowBytes = sizeof(SQLUSMALLINT);  // The row's status.
    for (const Column& column : columns_) {
      rowBytes += column.bytes() + sizeof(SQLLEN);
    }
    const std::size_t rows = rowArrays_ == RowArrays::Supported
                                 ? std::clamp<std::size_t>(kBlockBytes / rowBytes, 1, kMaxRows)
                                 : 1;
    if (rowArrays_ == RowArrays::Supported) {
      status_.assign(rows, SQL_ROW_SUCCESS);
      setAttribute(SQL_ATTR_ROW_ARRAY_SIZE, reinterpret_cast<SQLPOINTER>(rows));
      setAttribute(SQL_ATTR_ROW_STATUS_PTR, status_.data());
      setAttribute(SQL_ATTR_ROWS_FETCHED_PTR, &fetched_);
    }
    for (std::size_t i = 0; i < columns_.size(); ++i) {
      Column& column = columns_[i];
      column.boundWidth = column.width;
      column.texts.resize(rows * column.bytes());
      column.lengths.assign(rows, SQL_NULL_DATA);
      statement_.verify(SQLBindCol(statement_.get(), static_cast<SQLUSMALLINT>(i + 1),
                                   column.encoding == Encoding::Ascii ? SQL_C_CHAR : SQL_C_WCHAR,
                                   column.texts.data(), static_cast<SQLLEN>(column.bytes()),
                                   column.lengths.data()));
    }
  }

  void setAttribute(SQLINTEGER attribute, SQLPOINTER value) {
    statement_.verify(SQLSetStmtAttrW(statement_.get(), attribute, value, 0));
  }

  /// Appends the cell. False when it did not fit: the column has then grown.
  static bool append(Column& column, std::size_t row, Table& table, Budget& budget) {
    // Some drivers write only 32 bits of a length; no cell needs more.
    const auto length = static_cast<std::int32_t>(column.lengths[row]);
    if (length == SQL_NULL_DATA) {
      budget.takeCell(0);
      table.append(std::nullopt);
      return true;
    }
    const std::size_t needed = length == SQL_NO_TOTAL
                                   ? column.boundWidth * 2
                                   : static_cast<std::size_t>(length) / column.characterBytes() + 1;
    budget.takeCell(needed - 1);
    if (needed > column.boundWidth) {
      column.width = std::max(column.width, needed);
      table.append(std::nullopt);
      return false;
    }
    const char* const text =
        column.texts.data() + row * column.boundWidth * column.characterBytes();
    if (column.encoding == Encoding::Ascii) {
      table.appendAscii({text, needed - 1});
    } else {
      odbc::append(table, odbcView(reinterpret_cast<const SQLWCHAR*>(text), needed - 1));
    }
    return true;
  }

  const StatementHandle& statement_;
  RowArrays rowArrays_;
  std::size_t maxCharacters_;
  std::vector<Column> columns_;
  std::vector<SQLUSMALLINT> status_;
  SQLULEN fetched_ = 0;
};

/// Reads cells from a statement's current row. Keeps its buffers from one cell to the next.
class CellFetch {
 public:
  explicit CellFetch(const StatementHandle& statement) : statement_(statement), piece_(4096) {}

  /// nullopt for NULL.
  std::optional<std::u16string_view> read(SQLUSMALLINT column, Budget& budget) {
    text_.clear();
    for (;;) {
      const std::size_t room = piece_.size() - 1;  // The driver adds a terminator.
      SQLLEN bytes = 0;
      const SQLRETURN code =
          SQLGetData(statement_.get(), column, SQL_C_WCHAR, piece_.data(),
                     static_cast<SQLLEN>(piece_.size() * sizeof(SQLWCHAR)), &bytes);
      if (code == SQL_NO_DATA) break;
      statement_.verify(code);
      // Some drivers write only 32 bits of a length; no cell needs more.
      const auto length = static_cast<std::int32_t>(bytes);
      if (length == SQL_NULL_DATA) {
        budget.takeCell(0);
        return std::nullopt;
      }
      const bool known = length != SQL_NO_TOTAL;
      const std::size_t left =
          known ? static_cast<std::size_t>(length) / sizeof(SQLWCHAR) : 3 * room;
      text_ += odbcView(piece_.data(), std::min(left, room));
      if (known && left <= room) break;
      if (text_.size() > budget.left()) throw ResultTooLarge();
      // In as few pieces as possible, because some drivers convert the whole cell again for each;
      // one character more than may come shows that the cell is too large.
      piece_.resize(std::min(left - room, budget.left() - text_.size() + 1) + 1);
    }
    budget.takeCell(text_.size());
    return text_;
  }

 private:
  const StatementHandle& statement_;
  std::vector<SQLWCHAR> piece_;
  std::u16string text_;
};

}  // namespace

SQLUSMALLINT columnCount(const StatementHandle& statement) {
  SQLSMALLINT count = 0;
  statement.verify(SQLNumResultCols(statement.get(), &count));
  return static_cast<SQLUSMALLINT>(count);
}

Table fetchBlocks(const StatementHandle& statement, RowArrays rowArrays,
                  const std::function<void()>& executeAgain, std::size_t maxCharacters) {
  BlockFetch block(statement, rowArrays, maxCharacters);
  Table table;
  while (!block.fetch(table)) {
    block.close();
    executeAgain();
  }
  return table;
}

Table fetchCells(const StatementHandle& statement, std::size_t maxCharacters) {
  const SQLUSMALLINT columns = columnCount(statement);
  Table table(columns);
  Budget budget(maxCharacters);
  CellFetch cells(statement);
  for (;;) {
    const SQLRETURN code = SQLFetch(statement.get());
    if (code == SQL_NO_DATA) return table;
    statement.verify(code);
    for (SQLUSMALLINT column = 1; column <= columns; ++column) {
      if (const auto text = cells.read(column, budget)) {
        append(table, *text);
      } else {
        table.append(std::nullopt);
      }
    }
  }
}

}  // namespace tlpacscfg::odbc
