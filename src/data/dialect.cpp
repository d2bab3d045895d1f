#include "data/dialect.h"

#include <algorithm>
#include <span>

#include "data/sql_tokens.h"
#include "support/text.h"

namespace tlpacscfg {
namespace {

using Tokens = std::vector<SqlToken>;

bool startsStatement(const SqlToken& token) {
  return token.isWord(L"SELECT") || token.isWord(L"INSERT") || token.isWord(L"UPDATE") ||
         token.isWord(L"DELETE");
}

bool isBlankLine(const SqlToken& token) {
  return token.kind == SqlToken::Kind::Space &&
         std::count(token.text.begin(), token.text.end(), L'\n') > 1;
}

/// The batches separate their statements by blank lines.
std::vector<Tokens> splitStatements(std::wstring_view sql) {
  const Tokens tokens = sqlTokens(sql);
  std::vector<Tokens> statements;
  bool newStatement = false;
  for (const SqlToken& token : tokens) {
    if (statements.empty() && token.kind == SqlToken::Kind::Space) continue;
    if (isBlankLine(token)) newStatement = true;
    if (statements.empty() || (newStatement && startsStatement(token))) {
      statements.emplace_back();
      newStatement = false;
    }
    statements.back().push_back(token);
  }
  return statements;
}

std::size_t skipSpace(const Tokens& tokens, std::size_t position) {
  while (position < tokens.size() && tokens[position].kind == SqlToken::Kind::Space) ++position;
  return position;
}

bool symbolAt(const Tokens& tokens, std::size_t position, wchar_t symbol) {
  return position < tokens.size() && tokens[position].isSymbol(symbol);
}

std::size_t closingParenthesis(const Tokens& tokens, std::size_t open) {
  int depth = 0;
  for (std::size_t i = open; i < tokens.size(); ++i) {
    if (tokens[i].isSymbol(L'(')) ++depth;
    if (tokens[i].isSymbol(L')') && --depth == 0) return i;
  }
  return tokens.size();
}

/// Where `alias = (subquery)` in a select list ends, and where its parenthesis opens; 0 for other
/// words. In a condition the comparison stands behind WHERE and is left alone.
std::size_t openOfAssignedSubquery(const Tokens& tokens, std::size_t word) {
  if (tokens[word].kind != SqlToken::Kind::Word) return 0;
  const std::size_t equals = skipSpace(tokens, word + 1);
  if (!symbolAt(tokens, equals, L'=')) return 0;
  const std::size_t open = skipSpace(tokens, equals + 1);
  if (!symbolAt(tokens, open, L'(')) return 0;
  const std::size_t first = skipSpace(tokens, open + 1);
  return first < tokens.size() && tokens[first].isWord(L"SELECT") ? open : 0;
}

bool isAscii(std::wstring_view text) {
  return std::all_of(text.begin(), text.end(), [](wchar_t c) { return c < 0x80; });
}

/// A driver that knows no UTF-16 may get a statement through a conversion that keeps one byte of
/// each unit. Spelled as its bytes a text arrives whole.
std::wstring asciiText(std::wstring_view quoted) {
  const bool finished = std::count(quoted.begin(), quoted.end(), L'\'') % 2 == 0;
  if (isAscii(quoted) || !finished) return std::wstring(quoted);
  constexpr const wchar_t* kDigits = L"0123456789ABCDEF";
  std::wstring spelled = L"CAST(x'";
  for (const char byte : toUtf8(sqlTextValue(quoted))) {
    spelled += kDigits[static_cast<unsigned char>(byte) >> 4];
    spelled += kDigits[static_cast<unsigned char>(byte) & 0xF];
  }
  return spelled + L"' AS TEXT)";
}

std::wstring inAscii(const SqlToken& token) {
  return token.kind == SqlToken::Kind::Text ? asciiText(token.text) : std::wstring(token.text);
}

std::wstring joined(std::span<const SqlToken> tokens) {
  std::wstring text;
  for (const SqlToken& token : tokens) text += inAscii(token);
  return text;
}

/// SQLite's words for the current time, a row limit, a named subquery and a text.
std::wstring toSqlite(const Tokens& tokens) {
  std::wstring text;
  std::wstring limit;
  bool inSelectList = false;
  for (std::size_t i = 0; i < tokens.size(); ++i) {
    const SqlToken& token = tokens[i];
    if (token.isWord(L"SELECT")) inSelectList = true;
    if (token.isWord(L"FROM") || token.isWord(L"WHERE")) inSelectList = false;

    const std::size_t next = skipSpace(tokens, i + 1);
    if (token.isWord(L"GETDATE") && symbolAt(tokens, next, L'(') &&
        symbolAt(tokens, next + 1, L')')) {
      text += L"datetime('now','localtime')";
      i = next + 1;
    } else if (token.isWord(L"TOP") && inSelectList && next < tokens.size() &&
               tokens[next].kind == SqlToken::Kind::Word) {
      limit = L" LIMIT " + std::wstring(tokens[next].text);
      i = skipSpace(tokens, next + 1) - 1;
    } else if (const std::size_t open = inSelectList ? openOfAssignedSubquery(tokens, i) : 0) {
      const std::size_t close = closingParenthesis(tokens, open);
      const std::size_t length = std::min(close + 1, tokens.size()) - open;
      text += joined(std::span(tokens).subspan(open, length)) + L" AS " + std::wstring(token.text);
      i = close;
    } else {
      text += inAscii(token);
    }
  }
  return text + limit;
}

}  // namespace

Dialect dialectOf(std::wstring_view dbmsName) {
  if (equalIgnoringCase(dbmsName, L"SQLite")) return Dialect::Sqlite;
  if (equalIgnoringCase(dbmsName, L"MDBTOOLS")) return Dialect::AccessReader;
  return Dialect::SqlServer;
}

std::vector<std::wstring> statementsFor(Dialect dialect, std::wstring_view sql) {
  if (dialect != Dialect::Sqlite) return {std::wstring(sql)};
  std::vector<std::wstring> statements;
  for (const Tokens& statement : splitStatements(sql)) statements.push_back(toSqlite(statement));
  return statements;
}

}  // namespace tlpacscfg
