#include "cli/journal/journal.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <nlohmann/json.hpp>
#include <system_error>
#include <utility>

#include "cli/base/console.h"
#include "cli/base/failure.h"
#include "cli/base/process.h"
#include "cli/base/system_reason.h"
#include "cli/formats/files.h"
#include "cli/formats/output.h"
#include "cli/formats/plan_file.h"
#include "support/runtime_error.h"
#include "support/scope_exit.h"
#include "support/system.h"
#include "support/text.h"

namespace tlpacscfg::cli {
namespace {

namespace fs = std::filesystem;
using nlohmann::ordered_json;

constexpr const char* kEntryKind = "change";
constexpr const char* kExtension = ".json";
constexpr std::array kStates = {"pending", "stored", "not stored", "unknown"};

std::string ownDirectory() {
#ifdef _WIN32
  const auto base = environmentValue("LOCALAPPDATA");
  if (base) return *base + "\\tlpacscfg\\journal";
#else
  if (const auto base = environmentValue("XDG_STATE_HOME")) return *base + "/tlpacscfg/journal";
  const auto home = environmentValue("HOME");
  if (home) return *home + "/.local/state/tlpacscfg/journal";
#endif
  throw Failure(ExitCode::Usage, "There is no place for the journal. Use --journal DIR.");
}

std::string padded(int number, std::size_t width) {
  const std::string digits = std::to_string(number);
  return std::string(width - std::min(width, digits.size()), '0') + digits;
}

std::string timeNow() {
  const system::LocalTime now = system::localTime();
  return padded(now.year, 4) + "-" + padded(now.month, 2) + "-" + padded(now.day, 2) + " " +
         padded(now.hour, 2) + ":" + padded(now.minute, 2) + ":" + padded(now.second, 2);
}

std::string userName() {
  for (const char* name : {"USER", "LOGNAME", "USERNAME"}) {
    if (const auto value = environmentValue(name)) return *value;
  }
  return {};
}

std::string documentOf(const JournalEntry& entry) {
  const ordered_json json = {
      {"schema", schemaOf(kEntryKind)}, {"state", wordOf(entry.state)}, {"site", entry.site},
      {"command", entry.command},       {"time", entry.time},           {"user", entry.user},
      {"computer", entry.computer},     {"process", entry.process},     {"started", entry.started},
      {"undoes", entry.undoes},         {"plan", planJson(entry.plan)}};
  return json.dump(2) + "\n";
}

ChangeState stateOf(const std::string& word) {
  const auto found = std::ranges::find(kStates, word);
  if (found == kStates.end()) raise(ErrorNumber::InvalidProcedureCall);
  return static_cast<ChangeState>(found - kStates.begin());
}

JournalEntry entryIn(const std::string& content) {
  const ordered_json json = ordered_json::parse(content);
  if (json.at("schema") != schemaOf(kEntryKind)) raise(ErrorNumber::InvalidProcedureCall);
  return {.state = stateOf(json.at("state").get<std::string>()),
          .site = json.at("site").get<std::string>(),
          .command = json.at("command").get<std::string>(),
          .time = json.at("time").get<std::string>(),
          .user = json.at("user").get<std::string>(),
          .computer = json.at("computer").get<std::string>(),
          .process = json.at("process").get<std::int64_t>(),
          .started = json.value("started", std::string()),
          .undoes = json.at("undoes").get<int>(),
          .plan = planOf(json.at("plan"))};
}

/// The number in the name of a change's file; 0 for another file.
int numberOf(const fs::path& file) {
  const std::string name = utf8Of(file.filename());
  int number = 0;
  const char* const end = name.data() + name.size();
  const auto [digitsEnd, error] = std::from_chars(name.data(), end, number);
  const bool fits = error == std::errc{} && std::string_view(digitsEnd, end) == kExtension;
  return fits ? number : 0;
}

std::vector<int> numbersIn(const fs::path& directory) {
  std::vector<int> numbers;
  std::error_code none;
  for (const auto& file : fs::directory_iterator(directory, none)) {
    const int number = numberOf(file.path());
    if (number > 0) numbers.push_back(number);
  }
  std::ranges::sort(numbers);
  return numbers;
}

}  // namespace

const char* wordOf(ChangeState state) { return kStates.at(static_cast<std::size_t>(state)); }

Journal::Journal(const std::string& directory)
    : directory_(pathOf(directory.empty() ? ownDirectory() : directory)) {}

fs::path Journal::fileOf(int number) const {
  return directory_ / pathOf(padded(number, 6) + kExtension);
}

std::vector<JournalEntry> Journal::entries() const {
  std::vector<JournalEntry> entries;
  for (const int number : numbersIn(directory_)) {
    const std::string file = utf8Of(fileOf(number));
    const std::string content = readFile(file);
    // A program that was stopped here had not begun to change the site.
    if (content.empty()) continue;
    try {
      entries.push_back(entryIn(content));
    } catch (const std::exception& error) {
      throw Failure(ExitCode::Usage,
                    "The file '" + file + "' of the journal cannot be used: " + error.what());
    }
    entries.back().number = number;
  }
  return entries;
}

JournalEntry Journal::begin(JournalEntry entry) const {
  entry.state = ChangeState::Pending;
  entry.time = timeNow();
  entry.user = userName();
  entry.computer = toUtf8(system::computerName());
  entry.process = processId();
  entry.started = startOf(entry.process);
  const auto cannotWrite = [&](const std::error_code& error) {
    return Failure(ExitCode::Usage, "The journal in '" + utf8Of(directory_) +
                                        "' cannot be written: " + systemReason(error) +
                                        ". Nothing was changed.");
  };
  std::error_code error;
  const bool isNew = fs::create_directories(directory_, error);
  if (error) throw cannotWrite(error);
  // Who made the folder decides who else may read it.
  if (isNew) {
    fs::permissions(directory_, fs::perms::owner_all, error);
    makeFolderLast(directory_);
  }
  // An empty file claims the number; of several programs one can create it.
  const fs::path empty = directory_ / pathOf("claim-" + std::to_string(entry.process));
  if (const auto failure = replaceFile(empty, "", Lasting::No)) throw cannotWrite(failure);
  const ScopeExit removed([&] { fs::remove(empty, error); });
  const std::vector<int> numbers = numbersIn(directory_);
  entry.number = numbers.empty() ? 1 : numbers.back() + 1;
  while (!fs::copy_file(empty, fileOf(entry.number), error)) {
    if (error != std::errc::file_exists) throw cannotWrite(error);
    ++entry.number;
  }
  const auto failure = replaceFile(fileOf(entry.number), documentOf(entry), Lasting::Yes);
  if (failure) throw cannotWrite(failure);
  return entry;
}

void Journal::settle(JournalEntry& entry, ChangeState state) const {
  entry.state = state;
  writeFile(fileOf(entry.number), documentOf(entry), Lasting::Yes);
}

bool isUndone(const std::vector<JournalEntry>& entries, int number) {
  return std::ranges::any_of(entries, [&](const JournalEntry& entry) {
    return entry.number > number && entry.undoes == number && entry.state == ChangeState::Stored &&
           !isUndone(entries, entry.number);
  });
}

}  // namespace tlpacscfg::cli
