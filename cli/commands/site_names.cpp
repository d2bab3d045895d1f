#include "cli/commands/site_names.h"

#include "cli/base/failure.h"
#include "cli/base/suggestion.h"
#include "config/summary_texts.h"
#include "support/conversions.h"
#include "support/text.h"

namespace tlpacscfg::cli {
namespace {

std::wstring keyOf(std::wstring_view name) { return upperCase(trimBlanks(name)); }

}  // namespace

SiteNames::SiteNames(const Site& site) : site_(site) {
  for (const SiteWorkstation& workstation : site.workstations) {
    workstations_.try_emplace(keyOf(workstation.name), &workstation);
  }
  for (const auto& record : site.configurations) {
    configurations_[keyOf(record->Description)].push_back(record);
  }
}

const SiteWorkstation* SiteNames::workstation(const std::string& name) const {
  const auto found = workstations_.find(keyOf(fromUtf8(name)));
  return found == workstations_.end() ? nullptr : found->second;
}

const std::vector<Site::Configuration>* SiteNames::described(std::wstring_view description) const {
  const auto found = configurations_.find(keyOf(description));
  return found == configurations_.end() ? nullptr : &found->second;
}

std::vector<Site::Configuration> SiteNames::configurations(const std::string& word) const {
  const std::wstring wanted = fromUtf8(word);
  if (!IsAllDigits(wanted)) {
    const auto* const found = described(wanted);
    return found != nullptr ? *found : std::vector<Site::Configuration>();
  }
  // No larger number is one of a configuration.
  constexpr std::size_t kMaxDigits = 9;
  const std::int32_t number = wanted.size() > kMaxDigits ? INT32_MAX : toInt32(wanted);
  const auto record = number <= INT16_MAX ? site_.find(static_cast<std::int16_t>(number)) : nullptr;
  if (!record) return {};
  return {record};
}

Site::Configuration SiteNames::find(const std::string& word) const {
  const auto found = configurations(word);
  if (found.size() < 2) return found.empty() ? nullptr : found.front();
  throw Failure(ExitCode::Usage, "Several configurations are called '" + word + "', for example " +
                                     std::to_string(found[0]->configID) + " and " +
                                     std::to_string(found[1]->configID) + ". Use the number.");
}

void SiteNames::requireReadable(const std::string& word) const {
  for (const UnreadableConfiguration& row : site_.unreadable) {
    if (!configIDIn(row.configID) || !isSameAssignment(row.configID, fromUtf8(word))) continue;
    throw Failure(ExitCode::Findings, "Configuration " + toUtf8(row.configID) +
                                          " cannot be read: " + toUtf8(row.error.description()));
  }
}

Site::Configuration SiteNames::require(const std::string& word) const {
  if (auto found = find(word)) return found;
  requireReadable(word);
  throw Failure(ExitCode::Usage,
                "There is no configuration '" + word + "'." + suggestConfiguration(word));
}

std::string SiteNames::suggestWorkstation(const std::string& name) const {
  std::vector<std::string> known;
  for (const SiteWorkstation& workstation : site_.workstations) {
    known.push_back(toUtf8(workstation.name));
  }
  return suggestion(name, known);
}

std::string SiteNames::suggestConfiguration(const std::string& word) const {
  std::vector<std::string> known;
  for (const auto& record : site_.configurations) known.push_back(toUtf8(record->Description));
  return suggestion(word, known);
}

}  // namespace tlpacscfg::cli
