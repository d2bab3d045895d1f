#pragma once

#include <fuzzer/FuzzedDataProvider.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "odbc/table.h"
#include "data/tl_comm_client.h"

namespace tlpacscfg::fuzz {

/// Ends the program and names the property unless it holds; the fuzzer then keeps the input.
void require(bool holds, const char* property);

/// The whole input as text, read as UTF-8.
std::wstring textOf(const std::uint8_t* data, std::size_t size);

/// A piece of the input of at most so many bytes, read as UTF-8, without zeros.
std::wstring takeText(FuzzedDataProvider& input, std::size_t maxBytes);

/// A number as foreign data might hold it: plain, at a border, with a fraction, or no number.
std::wstring takeNumber(FuzzedDataProvider& input);

/// NULL, a number or a text.
std::optional<std::wstring> takeCell(FuzzedDataProvider& input);

/// The number of the run-time error that the action throws; null when it throws none.
std::optional<std::int32_t> errorOf(const std::function<void()>& action);

using Rows = std::vector<std::vector<std::optional<std::wstring>>>;

Table tableOf(const Rows& rows, std::size_t columns);

/// A remote data client that answers every query with the same table and remembers what it runs.
class FixedClient : public TlCommClientObject {
 public:
  FixedClient(Table table, std::vector<std::wstring>* executed)
      : table_(std::move(table)), executed_(executed) {}

  bool ConnectToService(const std::wstring&, const std::wstring&, const std::wstring&,
                        const std::wstring&) override {
    return true;
  }
  void DisconnectFromService(const std::wstring&) override {}
  std::int32_t SQLQueryTable(const std::wstring&, const std::wstring&) override { return 1; }
  Table GetTableData(std::int16_t) override { return table_; }
  bool SQLExecuteText(const std::wstring&, const std::wstring& sql) override {
    if (executed_ != nullptr) executed_->push_back(sql);
    return true;
  }
  std::vector<std::wstring> GetNetworkDirectoryFiles(const std::wstring&,
                                                     const std::wstring&) override {
    return {};
  }
  std::wstring CheckForError() override { return {}; }

 private:
  Table table_;
  std::vector<std::wstring>* executed_;
};

}  // namespace tlpacscfg::fuzz
