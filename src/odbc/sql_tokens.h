#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tlpacscfg {

/// A token of SQL text. The tokens of a text, joined, give the text.
struct SqlToken {
  enum class Kind { Word, Text, Space, Symbol };

  Kind kind;
  std::wstring_view text;

  bool isSymbol(wchar_t symbol) const { return kind == Kind::Symbol && text[0] == symbol; }
  bool isWord(std::wstring_view word) const;
  bool isAscii() const;
  /// Of a quoted text: whether it has its closing quote.
  bool isFinished() const;
};

/// Splits a text into words, quoted texts (with their quotes; one without an end goes to the end of
/// the text), runs of white space and single symbols.
std::vector<SqlToken> sqlTokens(std::wstring_view sql);

/// Whether a run of single quotes has an odd length: such a text, put between quotes as it is,
/// would end there.
bool hasUnpairedQuote(std::wstring_view text);

/// The value of a quoted text: without the quotes around it and with doubled quotes halved.
std::wstring sqlTextValue(std::wstring_view quoted);

}  // namespace tlpacscfg
