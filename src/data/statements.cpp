#include "data/statements.h"

#include "data/data_path.h"

namespace tlpacscfg {

void ExecuteSQL(const std::wstring& sql) { dataPath().execute(sql); }

std::wstring FixQuotes(const std::wstring& text) {
  std::wstring doubled;
  doubled.reserve(text.size());
  for (const wchar_t letter : text) {
    doubled += letter;
    if (letter == L'\'') doubled += letter;
  }
  return doubled;
}

}  // namespace tlpacscfg
