#include "ui/workstation_list/values/workstation_rows.h"

#include <algorithm>
#include <numeric>
#include <utility>

#include "config/option_tables.h"
#include "support/conversions.h"
#include "support/text.h"

namespace tlpacscfg {
namespace {

bool passes(const clsWorkstation& workstation, WorkstationFilter filter) {
  switch (filter) {
    case WorkstationFilter::Assigned:
      return workstation.configID != 0;
    case WorkstationFilter::Expert:
      return workstation.Flag2 == 1;
    case WorkstationFilter::All:
      break;
  }
  return true;
}

std::wstring_view requestFileText(const clsPACSConfiguration& configuration) {
  if (isBroker(configuration.PACSType)) return L"COM - Broker Interface";
  if (configuration.RequestFileName.empty()) return L"Not Defined";
  return configuration.RequestFileName;
}

/// The first configuration of each identifier, as GetItemNumber finds it, from a single pass.
class ConfigurationsByID {
 public:
  explicit ConfigurationsByID(const colPACSConfiguration& configurations) : found_(kIdentifiers) {
    for (const auto& configuration : configurations.ColPACSConfigs->items()) {
      const clsPACSConfiguration*& place = found_[placeOf(configuration->configID)];
      if (place == nullptr) place = configuration.get();
    }
  }
  const clsPACSConfiguration* find(std::int16_t id) const { return found_[placeOf(id)]; }

 private:
  static constexpr std::size_t kIdentifiers = 1 << 16;
  static std::size_t placeOf(std::int16_t id) { return static_cast<std::uint16_t>(id); }

  std::vector<const clsPACSConfiguration*> found_;
};

}  // namespace

void WorkstationRows::clear() {
  texts_.clear();
  rows_.clear();
  order_.clear();
}

void WorkstationRows::fill(const colWorkstation& workstations, colPACSConfiguration& configurations,
                           WorkstationFilter filter) {
  const int highestID = configurations.RequireNextConfigID() - 1;
  clear();
  const ConfigurationsByID byID(configurations);
  rows_.reserve(workstations.ColWorkStations->count());
  for (const auto& workstation : workstations.ColWorkStations->items()) {
    if (!passes(*workstation, filter)) continue;
    const std::int16_t id = workstation->configID;
    const clsPACSConfiguration* const found = byID.find(id);
    const bool shown = id != 0 && highestID != 0 && found != nullptr;
    rows_.push_back({keep(decimal(rows_.size() + 1)), keep(workstation->WorkStation),
                     shown ? keepConfiguration(*found) : keep(L"None"),
                     keep(shown ? requestFileText(*found) : L"N/A"),
                     keep(decimal(id == 0 ? kUnassigned : id))});
  }
  order_.resize(rows_.size());
  std::iota(order_.begin(), order_.end(), 0);
}

WorkstationRows::Text WorkstationRows::keep(std::wstring_view text) {
  const std::size_t start = texts_.size();
  texts_ += text;
  return {start, text.size()};
}

WorkstationRows::Text WorkstationRows::keepConfiguration(
    const clsPACSConfiguration& configuration) {
  const std::size_t start = texts_.size();
  texts_.append(decimal(configuration.configID)).append(L" - ").append(configuration.Description);
  return {start, texts_.size() - start};
}

std::wstring_view WorkstationRows::cell(std::size_t row, std::size_t column) const {
  if (row >= rows_.size() || column >= kColumns) return {};
  const Text& text = rows_[order_[row]][column];
  return std::wstring_view(texts_).substr(text.start, text.length);
}

void WorkstationRows::reorder(const std::vector<std::size_t>& order) {
  std::vector<std::size_t> reordered;
  reordered.reserve(order.size());
  for (const std::size_t row : order) reordered.push_back(order_[row]);
  order_ = std::move(reordered);
}

std::optional<std::size_t> WorkstationRows::rowOf(std::wstring_view name) const {
  for (std::size_t row = rows_.size(); row-- > 0;) {
    if (cell(row, kName) == name) return row;
  }
  return std::nullopt;
}

std::int16_t WorkstationRows::configIDOf(std::size_t row) const {
  return assignedID(toInt16(cell(row, kConfigID)));
}

std::wstring ReplaceNull(const std::optional<std::wstring>& value) {
  return value.value_or(L"N/A");
}

}  // namespace tlpacscfg
