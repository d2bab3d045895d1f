#include "cli/commands/site_check.h"

#include <algorithm>
#include <future>
#include <iterator>
#include <map>
#include <memory>
#include <thread>
#include <unordered_map>
#include <utility>

#include "cli/base/progress.h"
#include "cli/commands/site_names.h"
#include "cli/formats/fields.h"
#include "config/columns.h"
#include "config/option_tables.h"
#include "config/pacs_configurations.h"
#include "odbc/sql_tokens.h"
#include "support/conversions.h"
#include "support/runtime_error.h"
#include "support/text.h"
#include "ui/settings/values/settings_binding.h"
#include "ui/settings/values/settings_rules.h"
#include "ui/settings/values/settings_validation.h"

namespace tlpacscfg::cli {
namespace {

using Record = clsPACSConfiguration;
using Findings = std::vector<Finding>;

/// The checks of one configuration after the other. The window's rules work on a form; one blank
/// form serves for all.
class ConfigurationCheck {
 public:
  ConfigurationCheck(const SiteNames& names,
                     const std::optional<std::vector<std::wstring>>& xmlFiles, Findings& findings)
      : names_(names),
        xmlFiles_(xmlFiles),
        blank_(xmlFiles.value_or(std::vector<std::wstring>())),
        findings_(findings) {}

  void check(const Record& record) {
    record_ = &record;
    form_ = blank_;
    // Without the names of the files, the stored one is taken for granted.
    if (!xmlFiles_ && needsXmlFile(record.PACSType)) form_.xmlFiles = {record.CustomXMLFile};
    checkOptions();
    checkTexts();
    checkMapFile();
    const auto shown = showRecord(form_, record);
    RuleResult ruled = applyFieldRules(std::move(form_));
    form_ = std::move(ruled.form);
    for (const auto& message : {shown, ruled.message}) {
      if (message) note(Severity::Error, "validation", L"", *message);
    }
    for (std::wstring& message : ValidData(form_, *namesake(), record.configID).messages) {
      note(Severity::Error, "validation", L"", std::move(message));
    }
    // Its format fell back to none; the fields that follow from that say nothing more.
    if (!shown && !ruled.message) checkWhatSavingChanges();
  }

 private:
  void note(Severity severity, const char* rule, std::wstring field, std::wstring message) {
    findings_.push_back({severity, rule, decimal(record_->configID), std::nullopt, std::move(field),
                         std::move(message)});
  }

  /// Another configuration of this one's name, if there is one: all that the check of the
  /// description looks for.
  std::shared_ptr<colPACSConfiguration> namesake() const {
    auto collection = std::make_shared<colPACSConfiguration>();
    const auto* const named = names_.described(record_->Description);
    const auto other = std::ranges::find_if(
        *named, [&](const auto& record) { return record->configID != record_->configID; });
    if (other != named->end()) collection->ColPACSConfigs->add(std::make_shared<Record>(**other));
    return collection;
  }

  void checkOptions() {
    for (const Column& column : columns()) {
      if (isKnownOption(column, *record_)) continue;
      note(Severity::Warning, "unknown-option", column.property,
           L"The value " + tlpacscfg::textOf(valueOf(*record_, column.field)) +
               L" is none of its options.");
    }
  }

  void checkTexts() {
    for (const Column& column : columns()) {
      if (column.quoting != Quoting::AsItStands || column.onUpdate != Source::Record) continue;
      if (!hasUnpairedQuote(record_->*std::get<std::wstring Record::*>(column.field))) continue;
      note(Severity::Error, "text-not-savable", column.property,
           L"It holds a single quote, with which the configuration cannot be saved again.");
    }
  }

  void checkMapFile() {
    if (!xmlFiles_ || !needsXmlFile(record_->PACSType)) return;
    const bool found = std::ranges::any_of(*xmlFiles_, [&](const std::wstring& file) {
      return equalIgnoringCase(file, record_->CustomXMLFile);
    });
    if (found) return;
    note(Severity::Error, "map-file-missing", L"CustomXMLFile",
         L"There is no file '" + record_->CustomXMLFile + L"' in the prompts directory.");
  }

  void checkWhatSavingChanges() {
    for (const Binding& binding : bindings()) {
      try {
        if (!keepsValue(form_, binding, *record_)) noteChange(binding);
      } catch (const RunTimeError& error) {
        note(Severity::Error, "not-savable", columnOf(binding).property, error.description());
      }
    }
  }

  void noteChange(const Binding& binding) {
    const FieldValue stored = valueOf(*record_, binding.field);
    const FieldValue saved = readBack(form_, binding);
    const FieldValue none = std::int16_t{0};
    const bool bothTicked =
        binding.conversion == Conversion::Tick && stored != none && saved != none;
    if (bothTicked) return;
    const Column& column = columnOf(binding);
    note(Severity::Warning, "changed-by-rules", column.property,
         L"It is '" + fromUtf8(wordsOf(column, stored)) + L"'; the window would store '" +
             fromUtf8(wordsOf(column, saved)) + L"'.");
  }

  static const Column& columnOf(const Binding& binding) {
    return *std::ranges::find(columns(), binding.field, &Column::field);
  }

  const SiteNames& names_;
  const std::optional<std::vector<std::wstring>>& xmlFiles_;
  const SettingsForm blank_;
  Findings& findings_;
  const Record* record_ = nullptr;
  SettingsForm form_;
};

void checkConfigurations(const Site& site, const std::optional<std::vector<std::wstring>>& xmlFiles,
                         Findings& findings) {
  for (const UnreadableConfiguration& row : site.unreadable) {
    findings.push_back({Severity::Error, "unreadable-configuration", row.configID, std::nullopt,
                        L"", row.error.description() + L" Nobody can load the configurations."});
  }
  const auto& records = site.configurations;
  const SiteNames names(site);
  Progress progress("Checking the configurations", records.size());
  const auto findingsFrom = [&](std::size_t first, std::size_t last) {
    Findings found;
    ConfigurationCheck check(names, xmlFiles, found);
    for (std::size_t i = first; i < last; ++i) {
      if (i > 0 && records[i - 1]->configID == records[i]->configID) {
        found.push_back({Severity::Error, "duplicate-number", decimal(records[i]->configID),
                         std::nullopt, L"configID",
                         L"The number is stored twice. Nobody can load the configurations."});
      }
      check.check(*records[i]);
      progress.step();
    }
    return found;
  };
  // The rules share nothing, so that each processor takes a part of a large site.
  constexpr std::size_t kLeastPart = 1000;
  const std::size_t parts = std::min<std::size_t>(std::max(std::thread::hardware_concurrency(), 1U),
                                                  1 + records.size() / kLeastPart);
  std::vector<std::future<Findings>> checks;
  for (std::size_t part = 0; part < parts; ++part) {
    checks.push_back(std::async(std::launch::async, findingsFrom, records.size() * part / parts,
                                records.size() * (part + 1) / parts));
  }
  for (auto& check : checks) std::ranges::move(check.get(), std::back_inserter(findings));
}

class WorkstationCheck {
 public:
  WorkstationCheck(const Site& site, Findings& findings) : site_(site), findings_(findings) {
    for (const auto& row : site.unreadable) unreadable_.push_back(row.configID);
  }

  void check(const std::vector<StoredAssignment>& assignments) {
    std::map<std::wstring, std::vector<const StoredAssignment*>> rows;
    for (const StoredAssignment& row : assignments)
      rows[upperCase(row.workstation)].push_back(&row);
    std::unordered_map<std::wstring, int> names;
    for (const SiteWorkstation& workstation : site_.workstations) {
      const std::wstring key = upperCase(workstation.name);
      if (++names[key] == 2) {
        note(Severity::Error, "duplicate-workstation", workstation.name,
             L"The workstation is listed twice. Nobody can load the workstations.");
      }
      checkWorkstation(workstation);
      const auto found = rows.find(key);
      if (found == rows.end()) continue;
      if (found->second.size() > 1) checkSeveral(workstation.name, found->second);
      rows.erase(found);
    }
    for (const auto& [key, left] : rows) {
      if (left.front()->assigned.value_or(L"0") == L"0") continue;
      note(Severity::Warning, "assignment-of-unlisted-workstation", left.front()->workstation,
           L"It has the configuration " + *left.front()->assigned + L", but is not listed.");
    }
  }

 private:
  void note(Severity severity, const char* rule, const std::wstring& workstation,
            std::wstring message) {
    findings_.push_back({severity, rule, std::nullopt, workstation, L"", std::move(message)});
  }

  void checkWorkstation(const SiteWorkstation& workstation) {
    if (!workstation.flag2) {
      note(Severity::Error, "unreadable-workstation", workstation.name,
           L"Its flag2 is not a number. Nobody can load the workstations.");
    }
    if (!workstation.configID) {
      note(Severity::Error, "unreadable-assignment", workstation.name,
           L"Its assignment '" + *workstation.assigned +
               L"' is not a number. Nobody can load the workstations.");
    } else if (*workstation.configID != 0 && !site_.find(*workstation.configID) &&
               std::ranges::find(unreadable_, decimal(*workstation.configID)) ==
                   unreadable_.end()) {
      note(Severity::Error, "assignment-to-missing-configuration", workstation.name,
           L"It has the configuration " + decimal(*workstation.configID) +
               L", which does not exist.");
    }
  }

  void checkSeveral(const std::wstring& name, const std::vector<const StoredAssignment*>& rows) {
    note(Severity::Error, "several-assignments", name,
         decimal(rows.size()) + L" rows assign configurations to it.");
    std::map<std::int32_t, std::int16_t> ports;
    for (const StoredAssignment* const row : rows) {
      const auto record = site_.find(configIDIn(row->assigned).value_or(0));
      if (!record || !listens(*record)) continue;
      const auto [place, isFirst] = ports.emplace(record->Port, record->configID);
      if (isFirst || place->second == record->configID) continue;
      note(Severity::Error, kPortUsedTwice, name,
           L"The configurations " + decimal(place->second) + L" and " + decimal(record->configID) +
               L" both listen on port " + decimal(record->Port) + L" of this workstation.");
    }
  }

  const Site& site_;
  Findings& findings_;
  std::vector<std::wstring> unreadable_;
};

}  // namespace

bool listens(const Record& record) {
  return (record.PACSType == vendor::kTcpIp || record.PACSType == vendor::kBrokerExtended) &&
         record.Port > 0;
}

std::vector<Finding> findingsAbout(const std::vector<Site::Configuration>& records,
                                   const Site& site,
                                   const std::optional<std::vector<std::wstring>>& xmlFiles) {
  Findings findings;
  const SiteNames names(site);
  ConfigurationCheck check(names, xmlFiles, findings);
  for (const auto& record : records) check.check(*record);
  return findings;
}

std::vector<Finding> findingsIn(const Site& site, const std::vector<StoredAssignment>& assignments,
                                const std::optional<std::vector<std::wstring>>& xmlFiles) {
  Findings findings;
  checkConfigurations(site, xmlFiles, findings);
  WorkstationCheck(site, findings).check(assignments);
  return findings;
}

}  // namespace tlpacscfg::cli
