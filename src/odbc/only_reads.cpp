#include "odbc/only_reads.h"

#include <algorithm>
#include <iterator>
#include <vector>

#include "odbc/sql_tokens.h"

namespace tlpacscfg {
namespace {

// clang-format off
/// SQL Server needs no semicolon between a query and a statement that begins with a reserved word.
constexpr const wchar_t* kWordsOfChanges[] = {
    // Statements that change data, definitions, the server or the session.
    L"ADD", L"ALTER", L"BACKUP", L"CHECKPOINT", L"CREATE", L"DBCC", L"DELETE", L"DENY", L"DROP",
    L"EXEC", L"EXECUTE", L"GRANT", L"INSERT", L"KILL", L"MERGE", L"RAISERROR", L"RECONFIGURE",
    L"RESTORE", L"REVERT", L"REVOKE", L"SET", L"SETUSER", L"SHUTDOWN", L"TRUNCATE", L"UPDATE",
    L"UPDATETEXT", L"USE", L"WAITFOR", L"WRITETEXT",
    // END CONVERSATION and its like; END alone is part of queries.
    L"CONVERSATION",
    // Statements that begin or end a transaction.
    L"BEGIN", L"COMMIT", L"ROLLBACK", L"SAVE",
    // Parts of a query: a new table, the next value of a sequence, a statement for another server.
    L"INTO", L"NEXT", L"OPENDATASOURCE", L"OPENQUERY", L"OPENROWSET",
};
// clang-format on

/// Whatever else a text holds outside its words and quoted texts may separate or hide words.
constexpr std::wstring_view kSymbolsOfQueries = L"()*,.=<>!+-/%@|";

bool isChange(const SqlToken& token) {
  return std::any_of(std::begin(kWordsOfChanges), std::end(kWordsOfChanges),
                     [&](const wchar_t* word) { return token.isWord(word); });
}

/// SQL Server reads 1DELETE as two words.
bool isNumberOrName(std::wstring_view word) {
  constexpr const wchar_t* kDigits = L"0123456789";
  return word.find_first_of(kDigits) != 0 || word.find_first_not_of(kDigits) == word.npos;
}

/// Whether every database ends the token where `sqlTokens` does.
bool isUnmistakable(const SqlToken& token) {
  switch (token.kind) {
    case SqlToken::Kind::Space:
      return true;
    case SqlToken::Kind::Text:
      return token.isFinished();
    case SqlToken::Kind::Symbol:
      return kSymbolsOfQueries.find(token.text[0]) != kSymbolsOfQueries.npos;
    case SqlToken::Kind::Word:
      break;
  }
  // SQL Server has blanks outside ASCII, and some drivers keep one byte of each character.
  return token.isAscii() && isNumberOrName(token.text);
}

bool beginComment(const SqlToken& first, const SqlToken& second) {
  return (first.isSymbol(L'-') && second.isSymbol(L'-')) ||
         (first.isSymbol(L'/') && second.isSymbol(L'*'));
}

}  // namespace

bool onlyReads(std::wstring_view sql) {
  const std::vector<SqlToken> tokens = sqlTokens(sql);
  const auto first = std::find_if(tokens.begin(), tokens.end(), [](const SqlToken& token) {
    return token.kind != SqlToken::Kind::Space;
  });
  return first != tokens.end() && first->isWord(L"SELECT") &&
         std::all_of(tokens.begin(), tokens.end(), &isUnmistakable) &&
         std::none_of(tokens.begin(), tokens.end(), &isChange) &&
         std::adjacent_find(tokens.begin(), tokens.end(), &beginComment) == tokens.end();
}

}  // namespace tlpacscfg
