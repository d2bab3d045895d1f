#include "client/client_error.h"
#include "client/protocol.h"
#include "fuzz/fuzz_tools.h"
#include "service/json_text.h"
#include "service/request.h"
#include "support/text.h"

using namespace tlpacscfg;
using fuzz::require;
namespace protocol = client::protocol;

namespace {

/// Any answer is read, or reported as one that makes no sense.
void readForeign(const std::string& answer) {
  try {
    for (const Table& table : protocol::tablesIn(answer)) {
      require(table.columns() > 0, "a table has columns");
      for (std::size_t row = 0; row < table.rows(); ++row) {
        for (std::size_t column = 0; column < table.columns(); ++column) table.at(column, row);
      }
    }
  } catch (const client::ClientError&) {
  }
  try {
    protocol::filesIn(answer);
  } catch (const client::ClientError&) {
  }
  static_cast<void>(protocol::refusalIn(answer, 500));
}

/// The client reads what the service writes.
void readOwn(FuzzedDataProvider& input) {
  const auto columns = input.ConsumeIntegralInRange<std::size_t>(1, 4);
  const auto rows = input.ConsumeIntegralInRange<std::size_t>(0, 4);
  Table expected(columns);
  std::string text = "{\"tables\":[{\"columns\":" + std::to_string(columns) + ",\"rows\":[";
  for (std::size_t i = 0; i < rows * columns; ++i) {
    const auto cell = fuzz::takeCell(input);
    expected.append(cell ? Cell(*cell) : std::nullopt);
    if (i % columns == 0) text += i == 0 ? "[" : ",[";
    text += cell ? service::quoted(toUtf8(*cell)) : "null";
    text += i % columns == columns - 1 ? "]" : ",";
  }
  const std::string end = "]}]}";
  const std::vector<Table> tables = protocol::tablesIn(text + end);
  require(tables.size() == 1 && tables[0].columns() == columns && tables[0].rows() == rows,
          "a table keeps its size");
  for (std::size_t i = 0; i < rows * columns; ++i) {
    require(tables[0].at(i % columns, i / columns) == expected.at(i % columns, i / columns),
            "a cell arrives unchanged");
  }
  if (rows == 0) return;
  text.insert(text.size() - 1, ",null");
  try {
    protocol::tablesIn(text + end);
    require(false, "a row with too many cells makes no sense");
  } catch (const client::ClientError&) {
  }
}

/// The service reads what the client writes.
void askOwn(FuzzedDataProvider& input) {
  const std::wstring token = fuzz::takeText(input, 50), sql = fuzz::takeText(input, 200);
  const service::Request request(protocol::requestOf(token, {{"sql", sql}, {"sorted", true}}));
  require(request.text("token") == token, "the token arrives unchanged");
  require(request.text("sql") == sql, "the statement arrives unchanged");
  require(request.truth("sorted"), "a truth value arrives unchanged");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  readForeign(std::string(reinterpret_cast<const char*>(data), size));
  FuzzedDataProvider input(data, size);
  readOwn(input);
  askOwn(input);
  return 0;
}
