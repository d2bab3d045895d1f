#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <exception>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>

#include "cli/base/failure.h"
#include "cli/base/process.h"
#include "cli/commands/commands.h"
#include "cli/commands/examinations.h"
#include "cli/connection/settings_file.h"
#include "cli/connection/site_connection.h"
#include "cli/formats/output.h"
#include "cli/program/context.h"
#include "support/scope_exit.h"
#include "support/secret.h"

namespace tlpacscfg::cli {
namespace {

using std::chrono::seconds;
using std::chrono::steady_clock;

constexpr const char* kConnecting = "connection";

/// What a thread has found so far. A driver, a server or a file system may never answer, so the
/// thread that waits for them cannot be the one that watches the time.
class Round {
 public:
  /// Runs every examination and wipes the secret. Called by the examining thread.
  void examine(const ConnectionOptions& options, std::wstring& secret) noexcept {
    try {
      const ScopeExit wiped([&] { wipe(secret); });
      const SiteConnection connection(options, std::move(secret));
      ExaminedSite site{.options = options};
      for (const Examination& examination : examinations_) finish(examination.run(site));
    } catch (...) {
      const std::scoped_lock lock(mutex_);
      failure_ = std::current_exception();
    }
    const std::scoped_lock lock(mutex_);
    hasEnded_ = true;
    ended_.notify_all();
  }

  bool waitUntil(steady_clock::time_point limit) {
    std::unique_lock lock(mutex_);
    return ended_.wait_until(lock, limit, [&] { return hasEnded_; });
  }

  /// What was found until now; then what was not, when the time is over.
  Symptoms symptoms(const std::string& limit) {
    const std::scoped_lock lock(mutex_);
    Symptoms all = found_;
    for (std::size_t i = finished_; !hasEnded_ && i < examinations_.size(); ++i) {
      all.push_back(i == finished_
                        ? Symptom{Health::Error, examinations_[i].subject,
                                  "no answer within the " + limit,
                                  "Look at the network and at what locks the tables, or give it "
                                  "more time with --time-limit."}
                        : Symptom{Health::Warning, examinations_[i].subject,
                                  "not looked at within the " + limit, "Run it again."});
    }
    return all;
  }

  bool isConnected() {
    const std::scoped_lock lock(mutex_);
    return finished_ > 0;
  }

  std::exception_ptr failure() {
    const std::scoped_lock lock(mutex_);
    return failure_;
  }

 private:
  void finish(const Symptoms& symptoms) {
    const std::scoped_lock lock(mutex_);
    found_.insert(found_.end(), symptoms.begin(), symptoms.end());
    ++finished_;
  }

  const std::vector<Examination> examinations_ = examinations();
  std::mutex mutex_;
  std::condition_variable ended_;
  Symptoms found_;
  std::size_t finished_ = 0;
  bool hasEnded_ = false;
  std::exception_ptr failure_;
};

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

  std::vector<Option> options() override {
    return {{"--time-limit", "SECONDS", "For all of it; 60 when it is not given",
             Number{&timeLimit_, 1, 86400}}};
  }

  ExitCode run(Context& context) override {
    const Symptom settings = examineSettingsFile(context.connection);
    Symptoms symptoms = {settings};
    if (settings.health == Health::Error) {
      show(symptoms, context.output);
      return ExitCode::Usage;
    }
    const ConnectionOptions options = withSiteSettings(context.connection);
    add(symptoms, examinePasswordFile(options));
    add(symptoms, examineDrivers(options));
    const auto secret = std::make_shared<std::wstring>(secretOf(options));
    const auto start = steady_clock::now();
    // The examining thread may outlive this function, until the process ends.
    const auto round = std::make_shared<Round>();
    std::thread thread([round, options, secret] { round->examine(options, *secret); });
    const bool inTime = round->waitUntil(start + seconds(timeLimit_));
    ExitCode code = ExitCode::Done;
    add(symptoms, round->symptoms("time limit of " + std::to_string(timeLimit_) + " s"));
    if (!inTime) {
      show(symptoms, context.output);
      endProcess(
          static_cast<int>(round->isConnected() ? ExitCode::Findings : ExitCode::NoConnection));
    }
    thread.join();
    try {
      if (round->failure()) std::rethrow_exception(round->failure());
      const auto time =
          std::chrono::duration_cast<std::chrono::milliseconds>(steady_clock::now() - start);
      symptoms.push_back({Health::Ok, "time", std::to_string(time.count()) + " ms for all"});
    } catch (const Failure& failure) {
      if (failure.code() != ExitCode::NoConnection) throw;
      symptoms.push_back({Health::Error, kConnecting, failure.what(),
                          "Check the name, the driver, the login and the network."});
      code = failure.code();
    }
    show(symptoms, context.output);
    const bool wrong = std::ranges::any_of(
        symptoms, [](const Symptom& symptom) { return symptom.health == Health::Error; });
    return code == ExitCode::Done && wrong ? ExitCode::Findings : code;
  }

 private:
  static void add(Symptoms& all, const Symptoms& some) {
    all.insert(all.end(), some.begin(), some.end());
  }

  static void show(const Symptoms& symptoms, const OutputOptions& output) {
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

  int timeLimit_ = 60;
};

}  // namespace

std::unique_ptr<Command> doctorCommand() { return std::make_unique<Doctor>(); }

}  // namespace tlpacscfg::cli
