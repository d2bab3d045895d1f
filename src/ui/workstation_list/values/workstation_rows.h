#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "config/pacs_configurations.h"
#include "support/list_view_sort.h"
#include "workstation/workstation.h"

namespace tlpacscfg {

enum class WorkstationFilter { Assigned, Expert, All };

struct FilterEntry {
  WorkstationFilter filter;
  const wchar_t* text;
};

/// In the order in which the window offers them; the first is selected when it opens.
inline constexpr std::array<FilterEntry, 3> kFilterEntries = {{
    {WorkstationFilter::Assigned,
     L"All workstations with a Corvane Expert Integration configuration assigned"},
    {WorkstationFilter::Expert, L"All Corvane Expert workstations"},
    {WorkstationFilter::All, L"All workstations"},
}};

/// The rows of the workstation list: the texts of its five columns, in the present order.
class WorkstationRows : public SortableList {
 public:
  /// Columns count from 0. The running number and the identifier are hidden from the user.
  enum Column : std::size_t { kNumber, kName, kConfiguration, kRequestFile, kConfigID };
  static constexpr std::size_t kColumns = 5;

  /// The identifier in the row of a workstation without configuration: sorts after all others.
  static constexpr std::int16_t kUnassigned = 9999;
  /// What an identifier in a row means: 0 when none is assigned.
  static constexpr std::int16_t assignedID(std::int16_t configID) {
    return configID == kUnassigned ? std::int16_t{0} : configID;
  }

  void clear();

  /// The rows of the workstations that pass the filter, in their order. Requests the next
  /// identifier to find out whether any configuration exists; if that fails, throws and keeps the
  /// rows.
  void fill(const colWorkstation& workstations, colPACSConfiguration& configurations,
            WorkstationFilter filter);

  std::size_t rowCount() const override { return rows_.size(); }
  std::wstring_view cell(std::size_t row, std::size_t column) const override;
  void reorder(const std::vector<std::size_t>& order) override;

  /// The last row of exactly this name: names do not repeat.
  std::optional<std::size_t> rowOf(std::wstring_view name) const;

  /// The identifier of the row's configuration, 0 when none is assigned.
  std::int16_t configIDOf(std::size_t row) const;

 private:
  struct Text {
    std::size_t start;
    std::size_t length;
  };
  using Row = std::array<Text, kColumns>;

  Text keep(std::wstring_view text);
  Text keepConfiguration(const clsPACSConfiguration& configuration);

  /// All texts of all rows in one buffer: an allocation for each cell would slow down large lists.
  std::wstring texts_;
  /// In the order of the workstations.
  std::vector<Row> rows_;
  /// The index of the row shown at each position.
  std::vector<std::size_t> order_;
};

/// "N/A" for Null, otherwise the value as text.
std::wstring ReplaceNull(const std::optional<std::wstring>& value);

}  // namespace tlpacscfg
