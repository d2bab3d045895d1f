#include <algorithm>
#include <chrono>

#include "cli/base/failure.h"
#include "cli/commands/commands.h"
#include "cli/commands/site_diagnosis.h"
#include "cli/connection/installed_drivers.h"
#include "cli/connection/settings_file.h"
#include "cli/connection/site_connection.h"
#include "cli/formats/output.h"
#include "cli/program/context.h"

namespace tlpacscfg::cli {
namespace {

const char* wordOf(Health health) {
  switch (health) {
    case Health::Ok:
      return "ok";
    case Health::Warning:
      return "warning";
    case Health::Error:
      break;
  }
  return "error";
}

class Doctor : public Command {
 public:
  CommandHelp help() const override {
    return {.name = "doctor",
            .summary = "Find out whether the component can work with the site; only reads",
            .examples =
                "  tlpacscfg --site main doctor\n"
                "  tlpacscfg --site main doctor --ini /mnt/site/TALORA.INI --json\n"};
  }

  ExitCode run(Context& context) override {
    std::vector<Symptom> symptoms;
    for (const std::string& drivers : installedDrivers()) {
      symptoms.push_back({Health::Ok, "installed drivers", drivers, ""});
    }
    ExitCode code = ExitCode::Done;
    try {
      const auto start = std::chrono::steady_clock::now();
      const ConnectionOptions options = withSiteSettings(context.connection);
      const std::vector<Symptom> found = onSite(options, [&] { return diagnose(options); });
      symptoms.insert(symptoms.end(), found.begin(), found.end());
      const auto time = std::chrono::duration_cast<std::chrono::milliseconds>(
          std::chrono::steady_clock::now() - start);
      symptoms.push_back({Health::Ok, "time", std::to_string(time.count()) + " ms for all", ""});
    } catch (const Failure& failure) {
      if (failure.code() != ExitCode::NoConnection) throw;
      symptoms.push_back({Health::Error, "connection", failure.what(),
                          "Check the name, the driver, the login and the network."});
      code = failure.code();
    }
    const bool wrong = std::ranges::any_of(
        symptoms, [](const Symptom& symptom) { return symptom.health == Health::Error; });
    show(symptoms, context.output);
    return code == ExitCode::Done && wrong ? ExitCode::Findings : code;
  }

 private:
  static void show(const std::vector<Symptom>& symptoms, const OutputOptions& output) {
    Listing listing{.kind = "diagnosis",
                    .columns = {{"health", "Health"},
                                {"subject", "Subject"},
                                {"finding", "Finding"},
                                {"advice", "What to do"}},
                    .rows = {}};
    for (const Symptom& symptom : symptoms) {
      listing.rows.push_back({wordOf(symptom.health), symptom.subject, symptom.finding,
                              symptom.advice.empty() ? Value() : symptom.advice});
    }
    write(listing, output);
  }
};

}  // namespace

std::unique_ptr<Command> doctorCommand() { return std::make_unique<Doctor>(); }

}  // namespace tlpacscfg::cli
