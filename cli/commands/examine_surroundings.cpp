#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>

#include "cli/base/failure.h"
#include "cli/commands/examinations.h"
#include "cli/connection/installed_drivers.h"
#include "cli/connection/settings_file.h"
#include "cli/connection/site_connection.h"
#include "cli/formats/files.h"
#include "data/mod_main.h"
#include "support/system.h"
#include "support/text.h"
#include "ui/settings/values/settings_files.h"

namespace tlpacscfg::cli {
namespace {

using Minutes = std::chrono::sys_time<std::chrono::minutes>;

Minutes minutesOf(int year, int month, int day, int hour, int minute) {
  const std::chrono::sys_days date = std::chrono::year(year) / month / day;
  return date + std::chrono::hours(hour) + std::chrono::minutes(minute);
}

/// Of "YYYY-MM-DD HH:MM..."; null for any other text.
std::optional<Minutes> minutesIn(const std::string& time) {
  int year = 0, month = 0, day = 0, hour = 0, minute = 0;
  const int read =
      std::sscanf(time.c_str(), "%d-%d-%d%*c%d:%d", &year, &month, &day, &hour, &minute);
  if (read != 5) return std::nullopt;
  return minutesOf(year, month, day, hour, minute);
}

/// The names, of which one is needed unless it is empty.
Symptom listed(const std::string& subject, const std::string& programs,
               const std::vector<std::string>& names, const std::string& needed) {
  std::string text = "for " + programs + ": ";
  for (const std::string& name : names) text += (&name == names.data() ? "" : ", ") + name;
  if (names.empty()) text += "none";
  const bool has = needed.empty() || std::ranges::any_of(names, [&](const std::string& name) {
                     return equalIgnoringCase(fromUtf8(name), fromUtf8(needed));
                   });
  if (has) return {Health::Ok, subject, text};
  return {Health::Warning, subject, text + ", without '" + needed + "'",
          "Install it for these programs too, if a host of the component is one."};
}

}  // namespace

Symptom examineSettingsFile(const ConnectionOptions& given) {
  const std::string file = settingsFileOf(given);
  std::error_code ignored;
  if (given.site.empty()) {
    const bool exists = std::filesystem::exists(pathOf(file), ignored);
    return {Health::Ok, "settings file",
            exists ? file + ", not used without --site" : "none at " + file};
  }
  try {
    withSiteSettings(given);
    return {Health::Ok, "settings file", file + ", site " + given.site};
  } catch (const Failure& failure) {
    return {Health::Error, "settings file", failure.what(),
            "Read 'tlpacscfg --help': a line is an option without its dashes, = and its value."};
  }
}

Symptoms examinePasswordFile(const ConnectionOptions& options) {
  const std::string& file = options.passwordFile;
  // Windows has rights of another kind.
  const bool hasModes = std::filesystem::path::preferred_separator == '/';
  std::error_code ignored;
  if (!hasModes || !std::filesystem::exists(pathOf(file), ignored)) return {};
  constexpr auto kOthers = std::filesystem::perms::group_read | std::filesystem::perms::others_read;
  const auto rights = std::filesystem::status(pathOf(file), ignored).permissions();
  if ((rights & kOthers) == std::filesystem::perms::none) {
    return {{Health::Ok, "password file", file}};
  }
  return {{Health::Warning, "password file", file + " can be read by others",
           "Let only its owner read it: chmod 600."}};
}

Symptoms examineDrivers(const ConnectionOptions& options) {
  const std::string driver = options.server.empty() ? "" : "SQL Server";
  Symptoms symptoms;
  for (const InstalledDrivers& installed : installedDrivers()) {
    symptoms.push_back(listed("installed drivers", installed.programs, installed.drivers, driver));
    symptoms.push_back(
        listed("data sources", installed.programs, installed.dataSources, options.dataSource));
  }
  return symptoms;
}

Symptoms examineIniFile(ExaminedSite& site) {
  const std::string& file = site.options.iniFile;
  if (!site.options.rootDirectory.empty()) {
    return {{Health::Ok, "INI file", "not needed with --root"}};
  }
  if (file.empty()) {
    return {{Health::Warning, "INI file", "not looked at",
             "Name it with --ini FILE, or the folder with --root DIR."}};
  }
  std::error_code ignored;
  if (!std::filesystem::is_regular_file(pathOf(file), ignored)) {
    return {{Health::Error, "INI file", "there is no file '" + file + "'",
             "Name the TALORA.INI of the workstations."}};
  }
  if (!knowsPromptFiles()) {
    return {{Health::Error, "INI file", file + " names no NetworkRootDir",
             "Write NetworkRootDir=DIR below [System]."}};
  }
  return {{Health::Ok, "INI file",
           file + ": NetworkRootDir is " + toUtf8(modMain.g_strNetworkRootDir)}};
}

Symptoms examinePromptsFolder(ExaminedSite&) {
  if (!knowsPromptFiles()) {
    return {{Health::Warning, "prompts folder", "not looked at",
             "Name it with --root DIR or --ini FILE."}};
  }
  const auto files = promptXmlFiles();
  const std::string root = toUtf8(modMain.g_strNetworkRootDir);
  if (files.empty()) {
    return {{Health::Warning, "prompts folder",
             root + ": no mapping files, or TALORA/PROMPTS cannot be read",
             "Configurations that map with a file cannot be used."}};
  }
  return {{Health::Ok, "prompts folder",
           root + ": " + std::to_string(files.size()) + " mapping files"}};
}

Symptoms examineClock(ExaminedSite&) {
  if (modMain.g_blnUseOfflineDB) return {};
  const auto theirs = tryValue(L"SELECT GetDate()");
  const auto theirMinutes = theirs ? minutesIn(*theirs) : std::nullopt;
  if (!theirMinutes) return {unseen("clock")};
  const system::LocalTime now = system::localTime();
  const auto apart = *theirMinutes - minutesOf(now.year, now.month, now.day, now.hour, now.minute);
  constexpr std::chrono::minutes kAllowed(5);
  if (std::chrono::abs(apart) <= kAllowed) {
    return {
        {Health::Ok, "clock", "the database has " + theirs->substr(0, 16) + ", as this computer"}};
  }
  return {{Health::Warning, "clock",
           "the database has " + theirs->substr(0, 16) + ", " +
               std::to_string(std::chrono::abs(apart).count()) + " minutes " +
               (apart.count() > 0 ? "after" : "before") + " this computer",
           "The times of changes come from this computer: set its clock or time zone."}};
}

}  // namespace tlpacscfg::cli
