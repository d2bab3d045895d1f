#include "cli/connection/settings_file.h"

#include <algorithm>
#include <filesystem>

#include "cli/formats/files.h"
#include "cli/base/console.h"
#include "cli/base/failure.h"
#include "cli/base/suggestion.h"
#include "support/trimmed_line.h"

namespace tlpacscfg::cli {
namespace {

void set(const Option& option, const std::string& value, const std::string& place) {
  if (auto* const flag = std::get_if<bool*>(&option.target)) {
    if (value != "yes" && value != "no") {
      throw Failure(ExitCode::Usage, place + ": write yes or no.");
    }
    **flag = value == "yes";
  } else if (auto* const text = std::get_if<std::string*>(&option.target)) {
    **text = value;
  } else if (auto* const number = std::get_if<Number>(&option.target)) {
    const std::string complaint = number->complaintAbout(value);
    if (!complaint.empty()) throw Failure(ExitCode::Usage, place + ": " + complaint);
    *number->target = std::stoi(value);
  }
}

/// An option without its dashes, that a site may have.
std::vector<std::string> settingNames(const std::vector<Option>& options) {
  std::vector<std::string> names;
  for (const Option& option : options) {
    const std::string name = option.names.substr(2);
    if (name != "site" && name != "settings" && name != "password-stdin") names.push_back(name);
  }
  return names;
}

Failure unknownSetting(const std::string& place, const std::string& name,
                       const std::vector<std::string>& names) {
  return {ExitCode::Usage,
          place + ": '" + name + "' is not a setting." +
              (name == "password" ? " Write password-file = FILE." : suggestion(name, names))};
}

}  // namespace

std::string settingsFileOf(const ConnectionOptions& options) {
  if (!options.settingsFile.empty()) return options.settingsFile;
#ifdef _WIN32
  const auto base = environmentValue("APPDATA");
  return base ? *base + "\\tlpacscfg\\sites.ini" : std::string();
#else
  if (const auto base = environmentValue("XDG_CONFIG_HOME")) return *base + "/tlpacscfg/sites.ini";
  const auto home = environmentValue("HOME");
  return home ? *home + "/.config/tlpacscfg/sites.ini" : std::string();
#endif
}

ConnectionOptions withSiteSettings(ConnectionOptions options) {
  if (options.site.empty()) return options;
  const std::string file = settingsFileOf(options);
  std::error_code ignored;
  if (!std::filesystem::exists(pathOf(file), ignored)) {
    throw Failure(ExitCode::Usage, "There is no settings file " + file +
                                       ". It names sites: a line [" + options.site +
                                       "], then lines such as sqlite = FILE.");
  }
  const std::string content = readFile(file);
  const std::vector<Option> table = optionsOf(options);
  const std::vector<std::string> names = settingNames(table);
  if (options.passwordFromInput) options.given.insert("--password-file");
  std::vector<std::string> sites;
  bool found = false, inSite = false;
  std::size_t number = 0;
  std::string_view rest = content;
  while (!rest.empty()) {
    ++number;
    const std::string_view line = trimmedLine(rest.substr(0, rest.find('\n')));
    rest.remove_prefix(
        std::min(rest.size(), rest.find('\n') == rest.npos ? rest.size() : rest.find('\n') + 1));
    if (line.empty() || line.front() == '#' || line.front() == ';') continue;
    if (line.front() == '[') {
      sites.emplace_back(trimmedLine(line.substr(1, line.find(']') - 1)));
      inSite = sites.back() == options.site;
      found = found || inSite;
      continue;
    }
    if (!inSite) continue;
    const std::string place = file + ":" + std::to_string(number);
    const std::size_t equals = line.find('=');
    const std::string name(trimmedLine(line.substr(0, equals)));
    const auto known = std::ranges::find(names, name);
    if (equals == line.npos || known == names.end()) {
      throw unknownSetting(place, name, names);
    }
    const auto option = std::ranges::find(table, "--" + name, &Option::names);
    if (!options.given.insert(option->names).second) continue;
    set(*option, std::string(trimmedLine(line.substr(equals + 1))), place);
  }
  if (!found) {
    throw Failure(ExitCode::Usage, "There is no site '" + options.site + "' in " + file + "." +
                                       suggestion(options.site, sites));
  }
  return options;
}

}  // namespace tlpacscfg::cli
