#include <algorithm>
#include <cmath>
#include <cwchar>

#include "config/summary_texts.h"
#include "fuzz/fuzz_tools.h"
#include "odbc/connection.h"
#include "support/runtime_error.h"
#include "support/text.h"

using namespace tlpacscfg;
using fuzz::require;

namespace {

template <class Pieces>
std::wstring joined(const Pieces& pieces, std::wstring_view separator) {
  std::wstring text;
  bool first = true;
  for (const auto& piece : pieces) {
    if (!first) text += separator;
    text += piece;
    first = false;
  }
  return text;
}

void checkSplit(const std::wstring& text, wchar_t separator) {
  const std::vector<std::wstring_view> pieces = split(text, separator);
  require(joined(pieces, std::wstring(1, separator)) == text, "the pieces joined give the text");
  const auto separators = static_cast<std::size_t>(std::count(text.begin(), text.end(), separator));
  require(pieces.size() == (text.empty() ? 0 : separators + 1), "one piece more than separators");
}

void checkFieldList(const std::wstring& list) {
  std::wstring text;
  const auto error = fuzz::errorOf([&] { text = GetFieldListText(list); });
  if (error) {
    require(*error == static_cast<std::int32_t>(ErrorNumber::TypeMismatch) ||
                *error == static_cast<std::int32_t>(ErrorNumber::Overflow),
            "a list of something else is a type mismatch or an overflow");
    return;
  }
  std::vector<std::wstring> names;
  for (const std::wstring_view item : split(list, L',')) {
    const double number = std::wcstod(std::wstring(item).c_str(), nullptr);
    names.push_back(GetDictationFieldText(static_cast<std::int16_t>(std::nearbyint(number))));
  }
  require(text == joined(names, L", "), "each code gives its name");
}

/// The pairs of a connect string, separators included: a value that begins with a brace ends behind
/// the closing brace, doubled closing braces belong to it.
std::vector<std::wstring> pairsOf(const std::wstring& parameters) {
  std::vector<std::wstring> pairs(1);
  enum { kName, kValueStart, kPlain, kBraced } state = kName;
  for (std::size_t i = 0; i < parameters.size(); ++i) {
    const wchar_t c = parameters[i];
    pairs.back() += c;
    if (state == kBraced) {
      if (c != L'}') continue;
      if (i + 1 < parameters.size() && parameters[i + 1] == L'}') {
        pairs.back() += parameters[++i];
      } else {
        state = kPlain;
      }
    } else if (c == L';') {
      pairs.emplace_back();
      state = kName;
    } else if (state == kName) {
      if (c == L'=') state = kValueStart;
    } else if (state == kValueStart) {
      if (c != L' ') state = c == L'{' ? kBraced : kPlain;
    }
  }
  return pairs;
}

void checkConnectString(const std::wstring& parameters) {
  std::wstring expected;
  for (const std::wstring& pair : pairsOf(parameters)) {
    std::wstring bare = upperCase(pair);
    if (bare.ends_with(L';')) bare.pop_back();
    if (bare != L"DSN=" && bare != L"DSN=''") expected += pair;
  }
  require(odbc::withoutEmptyDataSource(parameters) == expected,
          "a connect string loses its empty data sources and nothing else");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::wstring text = fuzz::textOf(data, size);
  for (const wchar_t separator : {L',', L'\n', L'x'}) checkSplit(text, separator);
  checkFieldList(text);
  checkConnectString(text);
  return 0;
}
