#include <algorithm>
#include <optional>
#include <unordered_map>
#include <utility>

#include "cli/base/failure.h"
#include "cli/commands/change.h"
#include "cli/commands/commands.h"
#include "cli/commands/selection.h"
#include "cli/commands/site_names.h"
#include "cli/formats/assignments_csv.h"
#include "cli/formats/files.h"
#include "support/text.h"

namespace tlpacscfg::cli {
namespace {

/// The text that a row of the assignment stores.
std::wstring assignmentOf(const Site::Configuration& record) {
  return record ? decimal(record->configID) : L"0";
}

/// The lines of a CSV file as assignments. Every line that is wrong is reported, and then nothing
/// is assigned.
class CsvAssignments {
 public:
  CsvAssignments(const Site& site, std::string file)
      : names_(site), file_(file == "-" ? "standard input" : std::move(file)) {}

  void addTo(PlanMaker& maker, const std::string& content) {
    Csv csv = readCsv(content);
    for (CsvError& error : csv.errors) errors_.push_back(std::move(error));
    if (auto error = headerError(csv)) {
      errors_.push_back(std::move(*error));
    } else {
      csv.rows.erase(csv.rows.begin());
      for (const std::vector<CsvCell>& row : csv.rows) addLine(row, maker);
      if (csv.rows.empty() && errors_.empty()) addError({2, 1}, "There is no assignment.");
    }
    if (!errors_.empty()) throw Failure(ExitCode::Usage, report());
  }

 private:
  void addError(TextPosition at, std::string message) {
    errors_.push_back({at, std::move(message)});
  }

  /// Suggestions are worth their time while somebody reads them.
  bool suggests() const { return errors_.size() < 20; }

  void addLine(const std::vector<CsvCell>& row, PlanMaker& maker) {
    if (row.size() != 2) {
      const std::size_t wrong = std::min<std::size_t>(row.size() - 1, 2);
      return addError(row[wrong].at,
                      "There must be two cells, a workstation and a configuration, "
                      "not " +
                          std::to_string(row.size()) + ".");
    }
    const SiteWorkstation* const workstation = workstationIn(row[0]);
    const auto configuration = configurationIn(row[1]);
    if (workstation == nullptr || !configuration) return;
    const auto [earlier, isNew] = lines_.try_emplace(workstation, row[0].at.line);
    if (!isNew) return addError(row[0].at, namedTwice(trimmed(row[0]), earlier->second));
    maker.assign(*workstation, assignmentOf(*configuration));
  }

  const SiteWorkstation* workstationIn(const CsvCell& cell) {
    const std::string name = trimmed(cell);
    if (const SiteWorkstation* const found = names_.workstation(name)) return found;
    addError(cell.at, "There is no workstation '" + name + "'." +
                          (suggests() ? names_.suggestWorkstation(name) : ""));
    return nullptr;
  }

  /// A null record for none; nothing after an error.
  std::optional<Site::Configuration> configurationIn(const CsvCell& cell) {
    const std::string word = trimmed(cell);
    if (word.empty() || word == "0") return Site::Configuration();
    const auto found = names_.configurations(word);
    if (found.size() == 1) return found.front();
    addError(cell.at, !found.empty()
                          ? "Several configurations are called '" + word + "'. Use the number."
                          : "There is no configuration '" + word + "'." +
                                (suggests() ? names_.suggestConfiguration(word) : ""));
    return std::nullopt;
  }

  std::string report() {
    std::ranges::stable_sort(errors_, {}, [](const CsvError& error) {
      return std::pair(error.at.line, error.at.column);
    });
    std::string text = "Nothing was changed.";
    for (const CsvError& error : errors_) {
      text += "\n" + file_ + ":" + std::to_string(error.at.line) + ":" +
              std::to_string(error.at.column) + ": " + error.message;
    }
    return text;
  }

  SiteNames names_;
  std::string file_;
  std::vector<CsvError> errors_;
  std::unordered_map<const SiteWorkstation*, std::size_t> lines_;
};

class Assign : public Command {
 public:
  CommandHelp help() const override {
    return {
        .name = "assign",
        .summary = "Assign a configuration to workstations",
        .examples =
            "  tlpacscfg --site main assign 7 READ-01 'CT-CONSOLE-*'\n"
            "  tlpacscfg --site main assign none ANNEX-03 --dry-run\n"
            "  tlpacscfg --site main assign 'Ward round' --from 3\n"
            "  tlpacscfg --site main assign --csv moves.csv --plan moves.plan\n\n"
            "A CSV file begins with the line 'workstation,configuration'. A configuration is a\n"
            "number, a description, or nothing for none. 'export' writes such a file, "
            "assignments.csv.\n"};
  }

  std::vector<Option> options() override {
    return optionsOf(
        change_,
        {{.names = "CONFIGURATION",
          .value = "",
          .help = "A number, a description, or none",
          .target = &configuration_},
         {.names = "WORKSTATION",
          .value = "",
          .help = "A name or a pattern; * and ? stand for letters",
          .target = &workstations_},
         {"--from", "CONFIGURATION",
          "Only workstations that have this one now: a number, a description, or none", &from_},
         {"--csv", "FILE", "Read workstations and configurations from a file; - for standard input",
          &csvFile_}});
  }

  ExitCode run(Context& context) override {
    const bool fromCsv = !csvFile_.empty();
    const bool fromArguments = !configuration_.empty();
    const bool selects = !workstations_.empty() || !from_.empty();
    if (fromCsv ? fromArguments || selects : !fromArguments || !selects) {
      throw Failure(ExitCode::Usage,
                    "Write assign CONFIGURATION WORKSTATION..., assign CONFIGURATION --from "
                    "CONFIGURATION, or assign --csv FILE.");
    }
    const std::string content = fromCsv ? readFile(csvFile_) : std::string();
    return runChange(context, change_, {.command = "assign"},
                     [&](const Site& site, const auto&, Change&) {
                       PlanMaker maker(site);
                       if (fromCsv) {
                         CsvAssignments(site, csvFile_).addTo(maker, content);
                       } else {
                         assignSelected(site, maker);
                       }
                       return maker.plan();
                     });
  }

 private:
  static Site::Configuration configurationOrNone(const Site& site, const std::string& word) {
    return word == "none" ? nullptr : SiteNames(site).require(word);
  }

  void assignSelected(const Site& site, PlanMaker& maker) const {
    const std::wstring assigned = assignmentOf(configurationOrNone(site, configuration_));
    std::vector<const SiteWorkstation*> selected = selectWorkstations(site, workstations_);
    if (!from_.empty()) {
      const auto from = configIDIn(assignmentOf(configurationOrNone(site, from_)));
      std::erase_if(selected,
                    [&](const auto* workstation) { return workstation->configID != from; });
      if (selected.empty()) {
        throw Failure(ExitCode::Usage,
                      "No such workstation has the configuration '" + from_ + "'.");
      }
    }
    for (const SiteWorkstation* const workstation : selected) maker.assign(*workstation, assigned);
  }

  std::string configuration_;
  std::vector<std::string> workstations_;
  std::string from_;
  std::string csvFile_;
  ChangeOptions change_;
};

}  // namespace

std::unique_ptr<Command> assignCommand() { return std::make_unique<Assign>(); }

}  // namespace tlpacscfg::cli
