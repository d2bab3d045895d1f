#include "odbc/dialect.h"

#include <algorithm>

#include "data/tl_comm_client.h"
#include "fuzz/fuzz_tools.h"
#include "odbc/sql_tokens.h"
#include "support/text.h"
#include "workstation/workstation.h"

using namespace tlpacscfg;
using fuzz::require;

namespace {

/// The text of UTF-8 bytes in hexadecimal digits.
std::wstring fromDigits(const std::wstring& digits) {
  std::string bytes;
  for (std::size_t i = 0; i + 1 < digits.size(); i += 2) {
    bytes += static_cast<char>(std::stoi(digits.substr(i, 2), nullptr, 16));
  }
  return fromUtf8(bytes);
}

constexpr std::wstring_view kSpelledBefore = L"CAST(x";
constexpr std::wstring_view kSpelledBehind = L" AS TEXT)";

/// What the quoted texts of statements mean, but for those in SQLite's word for the current time.
std::vector<std::wstring> quotedTexts(const std::vector<std::wstring>& statements) {
  std::vector<std::wstring> texts;
  for (const std::wstring& statement : statements) {
    const std::wstring_view whole = statement;
    std::size_t position = 0;
    for (const SqlToken& token : sqlTokens(statement)) {
      const std::wstring_view before = whole.substr(0, position);
      position += token.text.size();
      const bool ofTime = token.text == L"'now'" || token.text == L"'localtime'";
      if (token.kind != SqlToken::Kind::Text || ofTime) continue;
      const std::wstring value = sqlTextValue(token.text);
      const bool spelled =
          before.ends_with(kSpelledBefore) && whole.substr(position).starts_with(kSpelledBehind);
      texts.push_back(spelled ? fromDigits(value) : fromUtf8(toUtf8(value)));
    }
  }
  return texts;
}

bool quotesMatch(std::wstring_view text) {
  return std::count(text.begin(), text.end(), L'\'') % 2 == 0;
}

void checkAnyText(const std::wstring& sql) {
  for (const Dialect dialect : {Dialect::SqlServer, Dialect::AccessReader}) {
    require(statementsFor(dialect, sql) == std::vector{sql}, "other databases get the text as is");
  }
  const std::vector<std::wstring> statements = statementsFor(Dialect::Sqlite, sql);
  for (const std::wstring& statement : statements) {
    require(quotesMatch(statement) || !quotesMatch(sql), "no split inside quotes");
  }
  if (quotesMatch(sql) && sql.find(kSpelledBehind) == sql.npos) {
    require(quotedTexts(statements) == quotedTexts({sql}), "quoted texts stay as they are");
  }
}

/// Whatever a workstation is called, a batch is a DELETE and an INSERT for each workstation.
void checkBatch(FuzzedDataProvider& input) {
  colWorkstation workstations;
  std::vector<std::wstring> expected;
  for (int i = input.ConsumeIntegralInRange(1, 4); i > 0; --i) {
    std::wstring name = fuzz::takeText(input, 60);
    // Quotes in names are not doubled; that such a name breaks its statement is known.
    std::erase(name, L'\'');
    if (fuzz::errorOf([&] { workstations.AddWS(7, name); })) continue;
    name = fromUtf8(toUtf8(name));
    expected.push_back(L"DELETE|" + name + L"|PACSConfig");
    expected.push_back(L"INSERT|" + name + L"|PACSConfig|7");
  }
  std::vector<std::wstring> executed;
  modTlCommClient.g_objTlCommClient = std::make_unique<fuzz::FixedClient>(Table(), &executed);
  workstations.SaveAllWorkStationSettings();
  require(executed.size() == 2, "few workstations are one batch, and the mark follows");

  std::vector<std::wstring> found;
  for (const std::wstring& statement : statementsFor(Dialect::Sqlite, executed[0])) {
    std::wstring text = statement.substr(0, 6);
    for (const std::wstring& quoted : quotedTexts({statement})) text += L"|" + quoted;
    found.push_back(text);
  }
  // A name that SQLite's word for the time contains does not count as a quoted text.
  const auto ofTime = [](const std::wstring& text) {
    return text.find(L"|now|") != text.npos || text.find(L"|localtime|") != text.npos;
  };
  if (std::none_of(expected.begin(), expected.end(), ofTime)) {
    require(found == expected, "a batch falls into a DELETE and an INSERT for each workstation");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  checkAnyText(fuzz::textOf(data, size));
  FuzzedDataProvider input(data, size);
  checkBatch(input);
  return 0;
}
