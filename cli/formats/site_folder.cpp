#include "cli/formats/site_folder.h"

#include <algorithm>
#include <filesystem>
#include <set>
#include <vector>

#include "cli/base/failure.h"
#include "cli/base/progress.h"
#include "cli/formats/assignments_csv.h"
#include "cli/formats/configuration_text.h"
#include "cli/formats/files.h"
#include "cli/formats/output.h"
#include "support/text.h"

namespace tlpacscfg::cli {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kPrefix = "configuration-", kSuffix = ".txt";
constexpr std::size_t kDigits = 5;

std::string fileNameOf(std::string number) {
  number.insert(0, kDigits - std::min(kDigits, number.size()), '0');
  return std::string(kPrefix) + number + std::string(kSuffix);
}

bool isConfigurationFile(const std::string& name) {
  if (!name.starts_with(kPrefix) || !name.ends_with(kSuffix)) return false;
  const std::string_view number =
      std::string_view(name).substr(kPrefix.size(), name.size() - kPrefix.size() - kSuffix.size());
  return number.size() >= kDigits && number.find_first_not_of("-0123456789") == number.npos;
}

std::vector<std::string> configurationFiles(const std::string& directory) {
  std::vector<std::string> names;
  std::error_code error;
  for (fs::directory_iterator entry(pathOf(directory), error), end; !error && entry != end;
       entry.increment(error)) {
    std::string name = utf8Of(entry->path().filename());
    if (isConfigurationFile(name)) names.push_back(std::move(name));
  }
  if (error) {
    throw Failure(ExitCode::Usage, "The folder '" + directory + "' cannot be read.");
  }
  std::ranges::sort(names);
  return names;
}

/// A file that is as it should be keeps its time.
void writeIfChanged(const std::string& directory, const std::string& name,
                    const std::string& content) {
  const fs::path file = pathOf(directory) / pathOf(name);
  std::error_code ignored;
  if (fs::is_regular_file(file, ignored) && readFile(utf8Of(file)) == content) return;
  writeFile(file, content);
}

std::string assignmentsText(const Site& site) {
  std::vector<const SiteWorkstation*> sorted;
  for (const SiteWorkstation& workstation : site.workstations) sorted.push_back(&workstation);
  std::ranges::sort(sorted, {}, [](const auto* workstation) { return workstation->name; });
  std::string text = csvLine({"workstation", "configuration"});
  for (const SiteWorkstation* const workstation : sorted) {
    text += csvLine({toUtf8(workstation->name), toUtf8(workstation->assigned.value_or(L""))});
  }
  std::erase(text, '\r');
  return text;
}

class FolderReader {
 public:
  explicit FolderReader(const std::string& directory) : directory_(directory) {}

  SiteFolder read() {
    const std::vector<std::string> files = configurationFiles(directory_);
    Progress progress("Reading the folder", files.size());
    for (const std::string& name : files) {
      readConfiguration(name);
      progress.step();
    }
    readAssignments();
    if (!errors_.empty()) {
      throw Failure(ExitCode::Usage, "The folder '" + directory_ + "' cannot be used." + errors_);
    }
    std::ranges::sort(folder_.site.configurations, {},
                      [](const auto& record) { return record->configID; });
    return std::move(folder_);
  }

 private:
  void note(const std::string& name, std::size_t line, const std::string& message) {
    errors_ += "\n" + name + (line > 0 ? ":" + std::to_string(line) : "") + ": " + message;
  }

  void readConfiguration(const std::string& name) {
    ConfigurationText text = readConfigurationText(readFile(directory_ + "/" + name));
    for (const TextError& error : text.errors) note(name, error.line, error.message);
    if (!text.errors.empty()) return;
    text.record.MarkAsLoaded();
    if (!numbers_.insert(text.record.configID).second) {
      return note(name, 0, "another file has the same configID");
    }
    folder_.site.configurations.push_back(
        std::make_shared<const clsPACSConfiguration>(text.record));
  }

  void readAssignments() {
    const Csv csv = readCsv(readFile(directory_ + "/" + kAssignmentsFile));
    for (const CsvError& error : csv.errors) note(kAssignmentsFile, error.at.line, error.message);
    if (const auto error = headerError(csv)) {
      return note(kAssignmentsFile, error->at.line, error->message);
    }
    for (std::size_t i = 1; i < csv.rows.size(); ++i) {
      const std::vector<CsvCell>& row = csv.rows[i];
      if (row.size() == 2) {
        addWorkstation(row);
      } else {
        note(kAssignmentsFile, row.front().at.line, "a line has a workstation and a configuration");
      }
    }
  }

  void addWorkstation(const std::vector<CsvCell>& row) {
    SiteWorkstation workstation;
    workstation.name = fromUtf8(row[0].text);
    if (!row[1].text.empty()) workstation.assigned = fromUtf8(row[1].text);
    workstation.configID = configIDIn(workstation.assigned);
    folder_.site.workstations.push_back(std::move(workstation));
    folder_.lines.push_back(row[0].at.line);
  }

  const std::string directory_;
  SiteFolder folder_;
  std::set<std::int16_t> numbers_;
  std::string errors_;
};

}  // namespace

void writeSiteFolder(const Site& site, const std::string& directory) {
  std::error_code error;
  fs::create_directories(pathOf(directory), error);
  std::set<std::string> kept;
  Progress progress("Writing the folder", site.configurations.size());
  for (const auto& record : site.configurations) {
    const std::string name = fileNameOf(std::to_string(record->configID));
    writeIfChanged(directory, name, textOf(*record));
    kept.insert(name);
    progress.step();
  }
  for (const auto& row : site.unreadable) kept.insert(fileNameOf(toUtf8(row.configID)));
  for (const std::string& name : configurationFiles(directory)) {
    if (!kept.contains(name)) fs::remove(pathOf(directory) / pathOf(name), error);
  }
  writeIfChanged(directory, kAssignmentsFile, assignmentsText(site));
}

SiteFolder readSiteFolder(const std::string& directory) { return FolderReader(directory).read(); }

}  // namespace tlpacscfg::cli
