#include "ui/model/workstation_rows.h"

#include <unordered_map>
#include <utility>

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

std::wstring requestFileText(const clsPACSConfiguration& configuration) {
  constexpr std::int16_t kBroker = 4;
  constexpr std::int16_t kBrokerExtended = 5;
  if (configuration.PACSType == kBroker || configuration.PACSType == kBrokerExtended) {
    return L"COM - Broker Interface";
  }
  return configuration.RequestFileName.empty() ? L"Not Defined" : configuration.RequestFileName;
}

/// The first configuration of each identifier, as GetItemNumber finds it, from a single walk.
using ConfigurationsByID = std::unordered_map<std::int16_t, const clsPACSConfiguration*>;

ConfigurationsByID configurationsByID(const colPACSConfiguration& configurations) {
  ConfigurationsByID byID;
  byID.reserve(configurations.ColPACSConfigs->count());
  for (const auto& configuration : configurations.ColPACSConfigs->items()) {
    byID.try_emplace(configuration->configID, configuration.get());
  }
  return byID;
}

}  // namespace

void WorkstationRows::fill(const colWorkstation& workstations, colPACSConfiguration& configurations,
                           WorkstationFilter filter) {
  const int highestID = configurations.GetNextConfigID() - 1;
  rows_.clear();
  const ConfigurationsByID byID = configurationsByID(configurations);
  for (const auto& workstation : workstations.ColWorkStations->items()) {
    if (!passes(*workstation, filter)) continue;
    const std::int16_t id = workstation->configID;
    const auto found = byID.find(id);
    const bool shown = id != 0 && highestID != 0 && found != byID.end();
    rows_.push_back({decimal(rows_.size() + 1), workstation->WorkStation,
                     shown ? decimal(id) + L" - " + found->second->Description : L"None",
                     shown ? requestFileText(*found->second) : L"N/A",
                     id == 0 ? kUnassigned : decimal(id)});
  }
}

std::wstring_view WorkstationRows::cell(std::size_t row, std::size_t column) const {
  if (row >= rows_.size() || column >= kColumns) return {};
  return rows_[row][column];
}

void WorkstationRows::reorder(const std::vector<std::size_t>& order) {
  std::vector<Row> reordered;
  reordered.reserve(order.size());
  for (const std::size_t row : order) reordered.push_back(std::move(rows_[row]));
  rows_ = std::move(reordered);
}

std::optional<std::size_t> WorkstationRows::rowOf(std::wstring_view name) const {
  for (std::size_t row = rows_.size(); row-- > 0;) {
    if (rows_[row][kName] == name) return row;
  }
  return std::nullopt;
}

std::int16_t WorkstationRows::configIDOf(std::size_t row) const {
  const std::wstring_view text = cell(row, kConfigID);
  return text == kUnassigned || text == L"N/A" ? std::int16_t{0} : toInt16(text);
}

}  // namespace tlpacscfg
