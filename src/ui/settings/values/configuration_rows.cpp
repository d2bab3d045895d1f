#include "ui/settings/values/configuration_rows.h"

#include "support/conversions.h"
#include "support/text.h"

namespace tlpacscfg {

void ConfigurationRows::fill(const colPACSConfiguration& configurations) {
  rows_.clear();
  rows_.reserve(configurations.ColPACSConfigs->count());
  for (const auto& configuration : configurations.ColPACSConfigs->items()) {
    if (configuration->configID <= 0) continue;
    const std::wstring id = decimal(configuration->configID);
    rows_.push_back({keyOf(configuration->configID), id, id + L" - " + configuration->Description});
  }
}

std::wstring_view ConfigurationRows::cell(std::size_t row, std::size_t column) const {
  // A list that has not been refilled yet may request a row that no longer exists.
  if (row >= rows_.size()) return {};
  const Row& cells = rows_[row];
  return column == kConfiguration ? cells.text : cells.configID;
}

std::optional<std::size_t> ConfigurationRows::rowOfKey(const std::wstring& key) const {
  for (std::size_t i = 0; i < rows_.size(); ++i) {
    if (rows_[i].key == key) return i;
  }
  return std::nullopt;
}

std::wstring ConfigurationRows::keyOf(std::int16_t configID) { return L"C" + decimal(configID); }

std::int16_t ConfigurationRows::configIDOfKey(const std::wstring& key) {
  return toInt16(std::wstring_view(key).substr(1));
}

}  // namespace tlpacscfg
