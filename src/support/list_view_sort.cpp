#include "support/list_view_sort.h"

#include <algorithm>
#include <chrono>
#include <cwchar>
#include <numeric>
#include <optional>

#include "support/conversions.h"
#include "support/runtime_error.h"

namespace tlpacscfg {

namespace {

std::int32_t numberOf(std::wstring_view text) {
  try {
    return toInt32(text);
  } catch (const RunTimeError&) {
    return 0;
  }
}

/// The part of a day in "HH:MM", "HH:MM:SS" or "HH:MM:SS.fff".
std::optional<double> timeOf(const std::wstring& text) {
  int hour = 0, minute = 0, used = 0;
  double second = 0;
  const int read =
      std::swscanf(text.c_str(), L"%2d:%2d%n:%lf%n", &hour, &minute, &used, &second, &used);
  const bool valid = read >= 2 && static_cast<std::size_t>(used) == text.size() && hour >= 0 &&
                     hour < 24 && minute >= 0 && minute < 60 && second >= 0 && second < 60;
  if (!valid) return std::nullopt;
  return (hour * 3600.0 + minute * 60.0 + second) / 86400.0;
}

/// Days since 30 December 1899 in "YYYY-MM-DD", with or without a time after it; else 0.
double dateOf(std::wstring_view cell) {
  using namespace std::chrono;
  const std::wstring text(cell);
  int year = 0, month = 0, day = 0, used = 0;
  if (std::swscanf(text.c_str(), L"%4d-%2d-%2d%n", &year, &month, &day, &used) < 3) return 0;
  const year_month_day date(std::chrono::year(year),
                            std::chrono::month(static_cast<unsigned>(month)),
                            std::chrono::day(static_cast<unsigned>(day)));
  if (!date.ok()) return 0;
  const auto days = sys_days(date) - sys_days(year_month_day(1899y, December, 30d));
  const auto whole = static_cast<double>(days.count());
  const std::wstring time = text.substr(static_cast<std::size_t>(used));
  if (time.empty()) return whole;
  const std::optional<double> part =
      time[0] == L' ' || time[0] == L'T' ? timeOf(time.substr(1)) : std::nullopt;
  return part ? whole + *part : 0;
}

template <class Value>
std::int16_t compare(Value first, Value second) {
  const int ascending = first < second ? 0 : first == second ? 1 : 2;
  return static_cast<std::int16_t>(modListView.g_intSortOrder == kAscending ? ascending
                                                                            : 2 - ascending);
}

template <class Key, class KeyOf>
std::vector<std::size_t> sortedBy(const SortableList& list, KeyOf keyOf) {
  const auto column = static_cast<std::size_t>(modListView.g_intSortColumn);
  std::vector<Key> keys;
  keys.reserve(list.rowCount());
  for (std::size_t row = 0; row < list.rowCount(); ++row) {
    keys.push_back(keyOf(list.cell(row, column)));
  }
  std::vector<std::size_t> order(keys.size());
  std::iota(order.begin(), order.end(), 0);
  const bool ascending = modListView.g_intSortOrder == kAscending;
  std::stable_sort(order.begin(), order.end(), [&](std::size_t first, std::size_t second) {
    return ascending ? keys[first] < keys[second] : keys[second] < keys[first];
  });
  return order;
}

}  // namespace

std::int16_t CompareNumbers(std::wstring_view first, std::wstring_view second) {
  return compare(numberOf(first), numberOf(second));
}

std::int16_t CompareDates(std::wstring_view first, std::wstring_view second) {
  return compare(dateOf(first), dateOf(second));
}

void SortListView(SortableList& list, std::int16_t column, std::int16_t sortType) {
  list.sortOrder = list.sortOrder == kAscending ? kDescending : kAscending;
  modListView.g_intSortColumn = static_cast<std::int16_t>(column - 1);
  modListView.g_intSortOrder = list.sortOrder;
  switch (static_cast<SortType>(sortType)) {
    case SortType::Text:
      return list.reorder(sortedBy<std::string>(list, collationKey));
    case SortType::WholeNumber:
      return list.reorder(sortedBy<std::int32_t>(list, numberOf));
    case SortType::Date:
      return list.reorder(sortedBy<double>(list, dateOf));
  }
}

}  // namespace tlpacscfg
