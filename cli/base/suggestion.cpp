#include "cli/base/suggestion.h"

#include <algorithm>
#include <cctype>
#include <numeric>
#include <utility>

namespace tlpacscfg::cli {
namespace {

char lower(char letter) {
  return static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
}

/// How many letters must be inserted, deleted, replaced or exchanged with their neighbour.
std::size_t distance(std::string_view first, std::string_view second) {
  std::vector<std::size_t> beforeLast, last(second.size() + 1), row(second.size() + 1);
  std::iota(last.begin(), last.end(), std::size_t{0});
  for (std::size_t i = 0; i < first.size(); ++i) {
    row[0] = i + 1;
    for (std::size_t j = 0; j < second.size(); ++j) {
      const bool same = lower(first[i]) == lower(second[j]);
      row[j + 1] = std::min({last[j + 1] + 1, row[j] + 1, last[j] + (same ? 0 : 1)});
      const bool exchanged = i > 0 && j > 0 && lower(first[i]) == lower(second[j - 1]) &&
                             lower(first[i - 1]) == lower(second[j]);
      if (exchanged) row[j + 1] = std::min(row[j + 1], beforeLast[j - 1] + 1);
    }
    beforeLast = last;
    last = row;
  }
  return last.back();
}

std::size_t lettersInCommon(std::string_view first, std::string_view second) {
  return static_cast<std::size_t>(std::ranges::mismatch(first, second).in1 - first.begin());
}

}  // namespace

std::string suggestion(std::string_view word, const std::vector<std::string>& known) {
  // Of those that are equally near, the one that begins alike.
  const auto nearest = std::ranges::min_element(known, {}, [&](const std::string& candidate) {
    return std::pair(distance(word, candidate), word.size() - lettersInCommon(word, candidate));
  });
  if (nearest == known.end()) return {};
  const std::size_t allowed = std::max<std::size_t>(1, nearest->size() / 3);
  if (distance(word, *nearest) > allowed) return {};
  return " Did you mean '" + *nearest + "'?";
}

}  // namespace tlpacscfg::cli
