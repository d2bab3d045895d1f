#include "support/ini_file.h"

#include "support/text.h"

namespace tlpacscfg {
namespace {

std::wstring_view trimSpace(std::wstring_view text) {
  constexpr const wchar_t* kSpace = L" \t\r";
  const std::size_t first = text.find_first_not_of(kSpace);
  if (first == text.npos) return {};
  return text.substr(first, text.find_last_not_of(kSpace) - first + 1);
}

std::wstring_view withoutQuotes(std::wstring_view value) {
  const bool quoted = value.size() >= 2 && value.front() == value.back() &&
                      (value.front() == L'"' || value.front() == L'\'');
  return quoted ? value.substr(1, value.size() - 2) : value;
}

}  // namespace

std::wstring findIniValue(std::wstring_view text, std::wstring_view section,
                          std::wstring_view key) {
  bool inSection = false;
  for (const std::wstring_view rawLine : split(text, L'\n')) {
    const std::wstring_view line = trimSpace(rawLine);
    if (line.starts_with(L'[')) {
      inSection = equalIgnoringCase(line.substr(1, line.find(L']') - 1), section);
      continue;
    }
    const std::size_t equals = line.find(L'=');
    if (!inSection || line.starts_with(L';') || equals == line.npos) continue;
    if (equalIgnoringCase(trimSpace(line.substr(0, equals)), key)) {
      return std::wstring(withoutQuotes(trimSpace(line.substr(equals + 1))));
    }
  }
  return {};
}

}  // namespace tlpacscfg
