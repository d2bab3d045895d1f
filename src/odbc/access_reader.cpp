#include "odbc/access_reader.h"

#include <algorithm>

#include "odbc/sql_tokens.h"
#include "support/conversions.h"
#include "support/runtime_error.h"
#include "support/text.h"

namespace tlpacscfg {
namespace {

/// Reads "select names from table [where name = value [and ...]] [order by names]".
class PlainSelect {
 public:
  explicit PlainSelect(std::wstring_view sql) {
    for (const SqlToken& token : sqlTokens(sql)) {
      if (token.kind != SqlToken::Kind::Space) tokens_.push_back(token);
    }
  }

  AccessReaderQuery parse() {
    AccessReaderQuery query;
    expect(L"SELECT");
    do columnOf(word());
    while (skip(L','));
    query.wantedColumns = columns_.size();
    expect(L"FROM");
    const std::wstring table(word());
    if (skipWord(L"WHERE")) {
      do query.conditions.push_back(condition());
      while (skipWord(L"AND"));
    }
    if (skipWord(L"ORDER")) {
      expect(L"BY");
      do query.orderBy.push_back(columnOf(word()));
      while (skip(L','));
    }
    if (position_ != tokens_.size()) raise(ErrorNumber::TypeMismatch);
    query.statement = L"SELECT ";
    for (std::size_t i = 0; i < columns_.size(); ++i) {
      query.statement += (i == 0 ? L"" : L", ") + std::wstring(columns_[i]);
    }
    query.statement += L" FROM " + table;
    return query;
  }

 private:
  bool atEnd() const { return position_ == tokens_.size(); }

  std::wstring_view word() {
    if (atEnd() || tokens_[position_].kind != SqlToken::Kind::Word) {
      raise(ErrorNumber::TypeMismatch);
    }
    return tokens_[position_++].text;
  }

  bool skipWord(std::wstring_view expected) {
    if (atEnd() || !tokens_[position_].isWord(expected)) return false;
    ++position_;
    return true;
  }

  void expect(std::wstring_view expected) {
    if (!skipWord(expected)) raise(ErrorNumber::TypeMismatch);
  }

  bool skip(wchar_t symbol) {
    if (atEnd() || !tokens_[position_].isSymbol(symbol)) return false;
    ++position_;
    return true;
  }

  std::size_t columnOf(std::wstring_view name) {
    const auto found = std::find_if(columns_.begin(), columns_.end(), [&](std::wstring_view known) {
      return equalIgnoringCase(known, name);
    });
    if (found != columns_.end()) return static_cast<std::size_t>(found - columns_.begin());
    columns_.push_back(name);
    return columns_.size() - 1;
  }

  AccessReaderQuery::Condition condition() {
    const std::size_t column = columnOf(word());
    if (!skip(L'=') || atEnd()) raise(ErrorNumber::TypeMismatch);
    const SqlToken& value = tokens_[position_++];
    const bool quoted = value.kind == SqlToken::Kind::Text;
    if (!quoted && value.kind != SqlToken::Kind::Word) raise(ErrorNumber::TypeMismatch);
    return {column, quoted ? sqlTextValue(value.text) : std::wstring(value.text)};
  }

  std::vector<SqlToken> tokens_;
  std::size_t position_ = 0;
  std::vector<std::wstring_view> columns_;
};

/// Less-than for cells: NULL, then numbers by value, then texts.
bool less(const Cell& first, const Cell& second) {
  if (!first || !second) return !first && second;
  const bool firstIsNumber = isNumeric(*first);
  if (firstIsNumber != isNumeric(*second)) return firstIsNumber;
  if (firstIsNumber) return toDouble(*first) < toDouble(*second);
  return upperCase(*first) < upperCase(*second);
}

}  // namespace

AccessReaderQuery accessReaderQueryFor(std::wstring_view sql) { return PlainSelect(sql).parse(); }

Table AccessReaderQuery::apply(const Table& fetched) const {
  const auto matches = [&](std::size_t row) {
    return std::all_of(conditions.begin(), conditions.end(), [&](const Condition& condition) {
      const Cell cell = fetched.at(condition.column, row);
      return cell && equalIgnoringCase(*cell, condition.value);
    });
  };
  std::vector<std::size_t> order;
  for (std::size_t row = 0; row < fetched.rows(); ++row) {
    if (matches(row)) order.push_back(row);
  }
  std::stable_sort(order.begin(), order.end(), [&](std::size_t first, std::size_t second) {
    for (const std::size_t column : orderBy) {
      const Cell left = fetched.at(column, first);
      const Cell right = fetched.at(column, second);
      if (less(left, right)) return true;
      if (less(right, left)) return false;
    }
    return false;
  });
  Table result(wantedColumns);
  for (const std::size_t row : order) {
    for (std::size_t column = 0; column < wantedColumns; ++column) {
      result.append(fetched.at(column, row));
    }
  }
  return result;
}

}  // namespace tlpacscfg
