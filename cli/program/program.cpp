#include "cli/program/program.h"

#include <CLI/CLI.hpp>
#include <iostream>
#include <set>

#include "cli/base/console.h"
#include "cli/base/failure.h"
#include "cli/base/progress.h"
#include "cli/base/suggestion.h"
#include "cli/formats/output.h"
#include "cli/program/context.h"
#include "host/version.h"

namespace tlpacscfg::cli {
namespace {

constexpr const char* kConnectionGroup = "Connection";
constexpr const char* kOutputGroup = "Output";
constexpr const char* kFirstSteps =
    R"(A site is what one of --server, --dsn, --sqlite, --offline and --service names, or, for --site, a section
of the settings file, ~/.config/tlpacscfg/sites.ini or on Windows %APPDATA%\tlpacscfg\sites.ini:

  [main]
  server = sql01
  database = Talora
  user = anna

The password is asked for, or comes from --password-file, --password-stdin or the variable
TLPACSCFG_PASSWORD.

From a look at a site to a change, and back:

  tlpacscfg --site main doctor
  tlpacscfg --site main list workstations
  tlpacscfg --site main assign --csv moves.csv --plan moves.plan
  tlpacscfg --site main apply moves.plan
  tlpacscfg --site main history
  tlpacscfg --site main undo

Read 'tlpacscfg COMMAND --help' for a command, 'tlpacscfg help exit-codes' for scripts.)";
constexpr const char* kHelpHint = "Read 'tlpacscfg --help' or 'tlpacscfg COMMAND --help'.";

void add(CLI::App& app, const Option& option, const char* group = nullptr) {
  CLI::Option* added = nullptr;
  if (auto* const flag = std::get_if<bool*>(&option.target)) {
    added = app.add_flag(option.names, **flag, option.help);
  } else if (auto* const text = std::get_if<std::string*>(&option.target)) {
    added = app.add_option(option.names, **text, option.help);
  } else if (auto* const number = std::get_if<Number>(&option.target)) {
    added = app.add_option(option.names, *number->target, option.help)
                ->check([number = *number](const std::string& given) {
                  return number.complaintAbout(given);
                });
  } else {
    added = app.add_option(option.names, **std::get_if<std::vector<std::string>*>(&option.target),
                           option.help);
    // An option takes one value each time it is given; arguments are all that stand there.
    if (!option.isArgument()) added->allow_extra_args(false);
  }
  if (!option.value.empty()) added->type_name(option.value);
  if (option.isArgument()) added->type_name("");
  if (option.required) added->required();
  if (!option.choices.empty()) added->check(CLI::IsMember(option.choices));
  if (group != nullptr) added->group(group);
}

/// The command line as the library sees it, made from the tables.
class Parser {
 public:
  Parser(const Commands& commands, const std::vector<Option>& connection,
         const std::vector<Option>& output)
      : app_("Looks after the integration configurations and workstations of a site.",
             "tlpacscfg") {
    app_.get_formatter()->label("SUBCOMMAND", "COMMAND");
    app_.get_formatter()->label("Positionals", "Arguments");
    // What a command does not know is an option of the program.
    app_.fallthrough();
    // A path may begin with a slash.
    app_.allow_windows_style_options(false);
    app_.require_subcommand(0, 1);
    app_.set_version_flag("--version", std::to_string(kVersionMajor) + "." +
                                           std::to_string(kVersionMinor) + "." +
                                           std::to_string(kVersionRevision));
    for (const Option& option : connection) add(app_, option, kConnectionGroup);
    for (const Option& option : output) add(app_, option, kOutputGroup);
    for (const auto& command : commands) {
      const CommandHelp help = command->help();
      CLI::App* const parsed = app_.add_subcommand(help.name, help.summary);
      parsed->group("Commands");
      parsed->footer("The options of 'tlpacscfg --help' may stand here, too.\n\nExamples:\n" +
                     std::string(help.examples));
      for (const Option& option : command->options()) add(*parsed, option);
    }
    app_.footer(kFirstSteps);
  }

  /// The name of the command; empty when help was asked for and printed, or none is given. Throws
  /// Failure.
  std::string parse(std::vector<std::string> arguments) {
    requireKnownOptions(arguments);
    std::ranges::reverse(arguments);
    try {
      app_.parse(std::move(arguments));
    } catch (const CLI::Success& asked) {
      app_.exit(asked, std::cout, std::cerr);
      return {};
    } catch (const CLI::ExtrasError&) {
      throw Failure(ExitCode::Usage, unknownWord());
    } catch (const CLI::ParseError& error) {
      throw Failure(ExitCode::Usage, error.what() + std::string("\n") + kHelpHint);
    }
    const auto chosen = app_.get_subcommands();
    if (chosen.empty())
      throw Failure(ExitCode::Usage, "There is no command. " + std::string(kHelpHint));
    return chosen.front()->get_name();
  }

  /// The options of the program that the command line gave.
  std::set<std::string> given(const std::vector<Option>& options) const {
    std::set<std::string> names;
    for (const Option& option : options) {
      if (app_.count(option.names) > 0) names.insert(option.names);
    }
    return names;
  }

  std::string helpText(const std::string& command) const {
    // The library's own help of the program is that of the command that was parsed.
    if (!command.empty()) return app_.get_subcommand(command)->help("tlpacscfg");
    return app_.get_formatter()->make_help(&app_, app_.get_name(), CLI::AppFormatMode::Normal);
  }

 private:
  /// Before the library, which would complain about the value that follows.
  void requireKnownOptions(const std::vector<std::string>& arguments) const {
    std::vector<std::string> known = optionNames(app_);
    for (const CLI::App* command : app_.get_subcommands(nullptr)) {
      const std::vector<std::string> own = optionNames(*command);
      known.insert(known.end(), own.begin(), own.end());
    }
    for (const std::string& argument : arguments) {
      if (argument == "--") return;
      const std::string name = argument.substr(0, argument.find('='));
      if (!name.starts_with("--") || std::ranges::find(known, name) != known.end()) continue;
      throw Failure(ExitCode::Usage,
                    "There is no option '" + name + "'." + suggestion(name, known));
    }
  }

  std::string unknownWord() const {
    const std::string word = app_.remaining(true).front();
    const auto chosen = app_.get_subcommands();
    if (!chosen.empty()) {
      return "'" + chosen.front()->get_name() + "' does not take '" + word + "'.\n" + kHelpHint;
    }
    std::vector<std::string> names;
    for (const CLI::App* command : app_.get_subcommands(nullptr)) {
      names.push_back(command->get_name());
    }
    return "There is no command '" + word + "'." + suggestion(word, names);
  }

  static std::vector<std::string> optionNames(const CLI::App& app) {
    std::vector<std::string> names;
    for (const CLI::Option* option : app.get_options()) {
      for (const std::string& name : option->get_lnames()) names.push_back("--" + name);
    }
    return names;
  }

  CLI::App app_;
};

ExitCode failed(ExitCode code, const std::string& message) {
  say("tlpacscfg: " + message);
  return code;
}

ExitCode runReported(const Commands& commands, const std::vector<std::string>& arguments) {
  Context context{
      .connection = {}, .output = {}, .commands = commands, .globalOptions = {}, .helpText = {}};
  const std::vector<Option> connection = optionsOf(context.connection);
  const std::vector<Option> output = optionsOf(context.output);
  context.globalOptions = connection;
  context.globalOptions.insert(context.globalOptions.end(), output.begin(), output.end());
  Parser parser(commands, connection, output);
  context.helpText = [&](const std::string& command) { return parser.helpText(command); };
  const std::string name = parser.parse(arguments);
  if (name.empty()) return ExitCode::Done;
  context.connection.given = parser.given(connection);
  if (errorsAreTerminal() && !context.output.json && !context.output.csv) Progress::allow();
  const auto command = std::ranges::find_if(
      commands, [&](const auto& candidate) { return candidate->help().name == name; });
  return (*command)->run(context);
}

}  // namespace

ExitCode runProgram(const Commands& commands, const std::vector<std::string>& arguments) {
  try {
    const ExitCode code = runReported(commands, arguments);
    flushOutput();
    return code;
  } catch (const Failure& failure) {
    return failed(failure.code(), failure.what());
  } catch (const std::exception& error) {
    return failed(ExitCode::Usage, error.what());
  }
}

}  // namespace tlpacscfg::cli
