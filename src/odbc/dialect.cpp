#include "odbc/dialect.h"

#include <algorithm>
#include <span>

#include "odbc/sql_tokens.h"
#include "support/text.h"

namespace tlpacscfg {
namespace {

using Tokens = std::span<const SqlToken>;

bool startsStatement(const SqlToken& token) {
  return token.isWord(L"SELECT") || token.isWord(L"INSERT") || token.isWord(L"UPDATE") ||
         token.isWord(L"DELETE");
}

bool isBlankLine(const SqlToken& token) {
  return token.kind == SqlToken::Kind::Space &&
         std::count(token.text.begin(), token.text.end(), L'\n') > 1;
}

std::size_t skipSpace(Tokens tokens, std::size_t position) {
  while (position < tokens.size() && tokens[position].kind == SqlToken::Kind::Space) ++position;
  return position;
}

/// Batches have blank lines between their statements.
std::vector<Tokens> splitStatements(Tokens tokens) {
  std::vector<Tokens> statements;
  std::size_t start = skipSpace(tokens, 0);
  bool newStatement = false;
  for (std::size_t i = start; i < tokens.size(); ++i) {
    if (isBlankLine(tokens[i])) newStatement = true;
    if (!newStatement || !startsStatement(tokens[i])) continue;
    statements.push_back(tokens.subspan(start, i - start));
    start = i;
    newStatement = false;
  }
  if (start < tokens.size()) statements.push_back(tokens.subspan(start));
  return statements;
}

bool symbolAt(Tokens tokens, std::size_t position, wchar_t symbol) {
  return position < tokens.size() && tokens[position].isSymbol(symbol);
}

std::size_t closingParenthesis(Tokens tokens, std::size_t open) {
  int depth = 0;
  for (std::size_t i = open; i < tokens.size(); ++i) {
    if (tokens[i].isSymbol(L'(')) ++depth;
    if (tokens[i].isSymbol(L')') && --depth == 0) return i;
  }
  return tokens.size();
}

/// For the alias of `alias = (subquery)` in a select list the position of the opening parenthesis,
/// 0 for any other word. A comparison with a subquery after WHERE is no alias.
std::size_t openOfAssignedSubquery(Tokens tokens, std::size_t word) {
  if (tokens[word].kind != SqlToken::Kind::Word) return 0;
  const std::size_t equals = skipSpace(tokens, word + 1);
  if (!symbolAt(tokens, equals, L'=')) return 0;
  const std::size_t open = skipSpace(tokens, equals + 1);
  if (!symbolAt(tokens, open, L'(')) return 0;
  const std::size_t first = skipSpace(tokens, open + 1);
  return first < tokens.size() && tokens[first].isWord(L"SELECT") ? open : 0;
}

/// SQLite's driver may get a statement through a conversion that keeps one byte of each UTF-16
/// unit. The text's bytes, written in hexadecimal, survive it.
std::wstring inHexadecimal(std::wstring_view quoted) {
  constexpr const wchar_t* kDigits = L"0123456789ABCDEF";
  std::wstring text = L"CAST(x'";
  for (const char byte : toUtf8(sqlTextValue(quoted))) {
    text += kDigits[static_cast<unsigned char>(byte) >> 4];
    text += kDigits[static_cast<unsigned char>(byte) & 0xF];
  }
  return text + L"' AS TEXT)";
}

void appendInAscii(std::wstring& text, const SqlToken& token) {
  const bool quoted = token.kind == SqlToken::Kind::Text;
  if (quoted && !token.isAscii() && token.isFinished()) {
    text += inHexadecimal(token.text);
  } else {
    text += token.text;
  }
}

bool needsTranslation(const SqlToken& token) {
  return token.isWord(L"SELECT") || token.isWord(L"GETDATE") ||
         (token.kind == SqlToken::Kind::Text && !token.isAscii());
}

/// Translates GETDATE(), TOP, `alias = (subquery)` and texts outside ASCII.
std::wstring toSqlite(Tokens tokens) {
  if (std::none_of(tokens.begin(), tokens.end(), &needsTranslation)) {
    return {tokens.front().text.begin(), tokens.back().text.end()};
  }
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
      for (const SqlToken& inner : tokens.subspan(open, length)) {
        appendInAscii(text, inner);
      }
      text.append(L" AS ").append(token.text);
      i = close;
    } else {
      appendInAscii(text, token);
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
  const std::vector<SqlToken> tokens = sqlTokens(sql);
  for (const Tokens statement : splitStatements(tokens)) statements.push_back(toSqlite(statement));
  return statements;
}

}  // namespace tlpacscfg
