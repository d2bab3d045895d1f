#include <algorithm>
#include <clocale>
#include <cstdlib>
#include <set>

#include "odbc/access_reader.h"
#include "fuzz/fuzz_tools.h"
#include "support/conversions.h"
#include "support/runtime_error.h"
#include "support/text.h"

using namespace tlpacscfg;
using fuzz::require;

namespace {

std::size_t columnsOf(const AccessReaderQuery& query) {
  return static_cast<std::size_t>(
             std::count(query.statement.begin(), query.statement.end(), L',')) +
         1;
}

void checkPlan(const AccessReaderQuery& query) {
  const std::size_t columns = columnsOf(query);
  require(query.wantedColumns >= 1 && query.wantedColumns <= columns, "wanted columns are fetched");
  for (const auto& condition : query.conditions) {
    require(condition.column < columns, "a compared column is fetched");
  }
  for (const std::size_t column : query.orderBy) {
    require(column < columns, "a column to sort by is fetched");
  }
  const AccessReaderQuery plain = accessReaderQueryFor(query.statement);
  require(plain.statement == query.statement && plain.conditions.empty() && plain.orderBy.empty(),
          "the statement for the reader needs no further work");
}

/// NULL, then numbers, then other texts.
int compare(const Cell& first, const Cell& second) {
  const auto kind = [](const Cell& cell) { return !cell ? 0 : isNumeric(*cell) ? 1 : 2; };
  if (kind(first) != kind(second)) return kind(first) - kind(second);
  if (kind(first) == 0) return 0;
  if (kind(first) == 1) {
    const double left = std::wcstod(std::wstring(*first).c_str(), nullptr);
    const double right = std::wcstod(std::wstring(*second).c_str(), nullptr);
    return left < right ? -1 : left > right ? 1 : 0;
  }
  return upperCase(*first).compare(upperCase(*second));
}

void checkResult(const AccessReaderQuery& query, const fuzz::Rows& rows, std::size_t columns) {
  const Table fetched = fuzz::tableOf(rows, columns);
  const Table result = query.apply(fetched);
  std::size_t matching = 0;
  for (std::size_t row = 0; row < fetched.rows(); ++row) {
    bool matches = true;
    for (const auto& condition : query.conditions) {
      const Cell cell = fetched.at(condition.column, row);
      matches = matches && cell && upperCase(*cell) == upperCase(condition.value);
    }
    matching += matches ? 1 : 0;
  }
  require(result.rows() == matching, "the rows that match, and no others");
  require(result.columns() == query.wantedColumns, "the wanted columns, and no others");

  const bool sortsByWanted =
      std::all_of(query.orderBy.begin(), query.orderBy.end(),
                  [&](std::size_t column) { return column < query.wantedColumns; });
  if (!sortsByWanted) return;
  for (std::size_t row = 1; row < result.rows(); ++row) {
    for (std::size_t earlier = 0; earlier < row; ++earlier) {
      int order = 0;
      for (std::size_t i = 0; i < query.orderBy.size() && order == 0; ++i) {
        order = compare(result.at(query.orderBy[i], earlier), result.at(query.orderBy[i], row));
      }
      require(order <= 0, "the rows are in order");
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FuzzedDataProvider input(data, size);
  const std::wstring sql = fuzz::takeText(input, 300);
  AccessReaderQuery query;
  const auto error = fuzz::errorOf([&] { query = accessReaderQueryFor(sql); });
  if (error) {
    require(*error == static_cast<std::int32_t>(ErrorNumber::TypeMismatch),
            "another statement is a type mismatch");
    query =
        accessReaderQueryFor(input.ConsumeBool() ? L"select a, b from t order by a"
                                                 : L"select a from t where b = '7' order by b, a");
  }
  checkPlan(query);

  const std::size_t columns = columnsOf(query);
  fuzz::Rows rows(input.ConsumeIntegralInRange<std::size_t>(0, 12));
  for (auto& row : rows) {
    for (std::size_t i = 0; i < columns; ++i) row.push_back(fuzz::takeCell(input));
  }
  checkResult(query, rows, columns);
  return 0;
}
