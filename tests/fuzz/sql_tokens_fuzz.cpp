#include <algorithm>

#include "odbc/sql_tokens.h"
#include "data/statements.h"
#include "fuzz/fuzz_tools.h"

using namespace tlpacscfg;
using fuzz::require;

namespace {

bool consistsOf(std::wstring_view text, std::wstring_view letters) {
  return text.find_first_not_of(letters) == text.npos;
}

void checkToken(const SqlToken& token, bool last) {
  require(!token.text.empty(), "a token holds something");
  const auto quotes = std::count(token.text.begin(), token.text.end(), L'\'');
  switch (token.kind) {
    case SqlToken::Kind::Text:
      require(token.text.front() == L'\'', "a quoted text begins with its quote");
      require(quotes % 2 == 0 || last, "only the last quoted text may be unfinished");
      break;
    case SqlToken::Kind::Space:
      require(consistsOf(token.text, L" \t\r\n"), "white space holds nothing else");
      break;
    case SqlToken::Kind::Symbol:
      require(token.text.size() == 1, "a symbol is one character");
      [[fallthrough]];
    case SqlToken::Kind::Word:
      require(quotes == 0, "a quote stands in quoted texts only");
      break;
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::wstring sql = fuzz::textOf(data, size);
  const std::vector<SqlToken> tokens = sqlTokens(sql);
  std::wstring joined;
  for (const SqlToken& token : tokens) {
    checkToken(token, &token == &tokens.back());
    joined += token.text;
  }
  require(joined == sql, "the tokens joined give the text");

  const std::wstring literal = L"'" + FixQuotes(sql) + L"'";
  const std::vector<SqlToken> one = sqlTokens(literal);
  require(one.size() == 1 && one[0].kind == SqlToken::Kind::Text,
          "a text with doubled quotes is one token");
  require(sqlTextValue(one[0].text) == sql, "the value of a quoted text is the text");
  return 0;
}
