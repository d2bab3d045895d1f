#include "support/pattern.h"

namespace tlpacscfg {

bool matchesPattern(std::wstring_view text, std::wstring_view pattern) {
  std::size_t inText = 0, inPattern = 0;
  std::size_t star = pattern.npos, resume = 0;
  while (inText < text.size()) {
    if (inPattern < pattern.size() && pattern[inPattern] == L'*') {
      star = inPattern++;
      resume = inText;
    } else if (inPattern < pattern.size() &&
               (pattern[inPattern] == L'?' || pattern[inPattern] == text[inText])) {
      ++inPattern;
      ++inText;
    } else if (star != pattern.npos) {
      // Let the last star match one character more.
      inPattern = star + 1;
      inText = ++resume;
    } else {
      return false;
    }
  }
  return pattern.find_first_not_of(L'*', inPattern) == pattern.npos;
}

}  // namespace tlpacscfg
