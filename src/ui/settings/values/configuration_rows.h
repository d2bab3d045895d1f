#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "config/pacs_configurations.h"
#include "support/list_view_sort.h"

namespace tlpacscfg {

/// The rows of the configuration list: every configuration but the placeholder, in the order of
/// the collection.
class ConfigurationRows : public ListRows {
 public:
  /// Columns count from 0; the last one is for programs that read the list.
  enum Column : std::size_t { kConfigID, kConfiguration, kHiddenID };
  static constexpr std::size_t kColumns = 3;

  void fill(const colPACSConfiguration& configurations);
  void clear() { rows_.clear(); }

  std::size_t rowCount() const override { return rows_.size(); }
  std::wstring_view cell(std::size_t row, std::size_t column) const override;

  /// "C" and the identifier: the only link between a row and its configuration.
  const std::wstring& key(std::size_t row) const { return rows_[row].key; }
  std::optional<std::size_t> rowOfKey(const std::wstring& key) const;
  static std::wstring keyOf(std::int16_t configID);
  static std::int16_t configIDOfKey(const std::wstring& key);

 private:
  struct Row {
    std::wstring key;
    std::wstring configID;
    std::wstring text;
  };
  std::vector<Row> rows_;
};

}  // namespace tlpacscfg
