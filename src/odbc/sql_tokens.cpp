#include "odbc/sql_tokens.h"

#include <algorithm>

#include "support/text.h"

namespace tlpacscfg {
namespace {

constexpr wchar_t kQuote = L'\'';

bool isSpace(wchar_t c) { return c == L' ' || c == L'\t' || c == L'\r' || c == L'\n'; }

bool isWordCharacter(wchar_t c) {
  return (c >= L'a' && c <= L'z') || (c >= L'A' && c <= L'Z') || (c >= L'0' && c <= L'9') ||
         c == L'_' || c > 0x7F;
}

/// The position after the closing quote; a doubled quote is part of the text.
std::size_t endOfQuoted(std::wstring_view sql, std::size_t start) {
  std::size_t position = start + 1;
  while (position < sql.size()) {
    if (sql[position] != kQuote) {
      ++position;
    } else if (position + 1 < sql.size() && sql[position + 1] == kQuote) {
      position += 2;
    } else {
      return position + 1;
    }
  }
  return sql.size();
}

template <class Predicate>
std::size_t endOfRun(std::wstring_view sql, std::size_t start, Predicate belongs) {
  while (start < sql.size() && belongs(sql[start])) ++start;
  return start;
}

}  // namespace

bool SqlToken::isWord(std::wstring_view word) const {
  return kind == Kind::Word && equalIgnoringCase(text, word);
}

bool SqlToken::isAscii() const {
  return std::all_of(text.begin(), text.end(), [](wchar_t c) { return c < 0x80; });
}

bool SqlToken::isFinished() const { return std::count(text.begin(), text.end(), kQuote) % 2 == 0; }

std::vector<SqlToken> sqlTokens(std::wstring_view sql) {
  std::vector<SqlToken> tokens;
  tokens.reserve(sql.size() / 4);
  for (std::size_t start = 0; start < sql.size();) {
    SqlToken::Kind kind = SqlToken::Kind::Symbol;
    std::size_t end = start + 1;
    if (sql[start] == kQuote) {
      kind = SqlToken::Kind::Text;
      end = endOfQuoted(sql, start);
    } else if (isSpace(sql[start])) {
      kind = SqlToken::Kind::Space;
      end = endOfRun(sql, start, isSpace);
    } else if (isWordCharacter(sql[start])) {
      kind = SqlToken::Kind::Word;
      end = endOfRun(sql, start, isWordCharacter);
    }
    tokens.push_back({kind, sql.substr(start, end - start)});
    start = end;
  }
  return tokens;
}

bool hasUnpairedQuote(std::wstring_view text) {
  for (std::size_t start = text.find(kQuote); start != text.npos;
       start = text.find(kQuote, start)) {
    const std::size_t end = endOfRun(text, start, [](wchar_t c) { return c == kQuote; });
    if ((end - start) % 2 != 0) return true;
    start = end;
  }
  return false;
}

std::wstring sqlTextValue(std::wstring_view quoted) {
  std::wstring value;
  const std::size_t end =
      quoted.size() > 1 && quoted.back() == kQuote ? quoted.size() - 1 : quoted.size();
  for (std::size_t i = 1; i < end; ++i) {
    value += quoted[i];
    if (quoted[i] == kQuote) ++i;
  }
  return value;
}

}  // namespace tlpacscfg
