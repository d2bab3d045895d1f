#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tlpacscfg {

/// A piece of SQL text. Joined again, the pieces give the text they were cut from.
struct SqlToken {
  enum class Kind { Word, Text, Space, Symbol };

  Kind kind;
  std::wstring_view text;

  bool isSymbol(wchar_t symbol) const { return kind == Kind::Symbol && text[0] == symbol; }
  bool isWord(std::wstring_view word) const;
};

/// Cuts a text into words, quoted texts (quotes included, an unfinished one up to the end), runs of
/// white space and single symbols.
std::vector<SqlToken> sqlTokens(std::wstring_view sql);

/// Whether a run of single quotes has an odd length: put between quotes as it stands, the text
/// would end there.
bool hasUnpairedQuote(std::wstring_view text);

/// The value of a quoted text: without its quotes, doubled quotes single.
std::wstring sqlTextValue(std::wstring_view quoted);

}  // namespace tlpacscfg
