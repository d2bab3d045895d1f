#include <algorithm>
#include <string_view>

#include "cli/program/option_table.h"

namespace tlpacscfg::cli {
namespace {

using Options = std::vector<Option>;

std::string joined(const std::vector<std::string>& words, std::string_view separator) {
  std::string text;
  for (const std::string& word : words) text.append(text.empty() ? "" : separator).append(word);
  return text;
}

/// "--yes" of "-y,--yes".
std::string longName(const Option& option) { return option.names.substr(option.names.find("--")); }

bool takesPath(const Option& option) {
  const std::string& what = option.isArgument() ? option.names : option.value;
  return what == "FILE" || what == "DIR" || what == "A" || what == "B";
}

std::vector<std::string> commandNames(const Context& context) {
  std::vector<std::string> names;
  for (const auto& command : context.commands) names.emplace_back(command->help().name);
  return names;
}

/// What may follow the command: its options, and the values of its arguments.
std::vector<std::string> wordsOf(const Options& options) {
  std::vector<std::string> words;
  for (const Option& option : options) {
    if (!option.isArgument()) words.push_back(longName(option));
    if (option.isArgument())
      words.insert(words.end(), option.choices.begin(), option.choices.end());
  }
  return words;
}

bool hasPathArgument(const Options& options) {
  return std::ranges::any_of(
      options, [](const Option& option) { return option.isArgument() && takesPath(option); });
}

Options everyOption(const Context& context) {
  Options all = context.globalOptions;
  for (const auto& command : context.commands) {
    for (Option& option : command->options()) all.push_back(std::move(option));
  }
  return all;
}

/// The same script for bash, and for zsh with its emulation of bash's completions.
std::string bash(const Context& context) {
  std::vector<std::string> files, valued;
  std::string choices;
  for (const Option& option : everyOption(context)) {
    if (option.isArgument() || option.value.empty()) continue;
    (takesPath(option) ? files : valued).push_back(longName(option));
    if (!option.choices.empty()) {
      choices += "    " + longName(option) + ") COMPREPLY=($(compgen -W '" +
                 joined(option.choices, " ") + "' -- \"$current\")); return ;;\n";
    }
  }
  std::string commands;
  for (const auto& command : context.commands) {
    const Options options = command->options();
    commands += "    " + std::string(command->help().name) + ") words='" +
                joined(wordsOf(options), " ") + "'" +
                (hasPathArgument(options) ? " paths=yes" : "") + " ;;\n";
  }
  const auto unique = [](std::vector<std::string>& names) {
    std::ranges::sort(names);
    names.erase(std::unique(names.begin(), names.end()), names.end());
  };
  unique(files);
  unique(valued);
  return "_tlpacscfg() {\n"
         "  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD-1]}\n"
         "  local word command='' words='' paths=''\n"
         "  COMPREPLY=()\n"
         "  case $previous in\n" +
         choices + "    " + joined(files, " | ") +
         ") COMPREPLY=($(compgen -f -- \"$current\")); return ;;\n    " + joined(valued, " | ") +
         ") return ;;\n"
         "  esac\n"
         "  for word in \"${COMP_WORDS[@]:1:COMP_CWORD-1}\"; do\n"
         "    case $word in\n      " +
         joined(commandNames(context), " | ") +
         ") command=$word; break ;;\n"
         "    esac\n"
         "  done\n"
         "  case $command in\n    '') words='" +
         joined(commandNames(context), " ") + "' ;;\n" + commands +
         "  esac\n"
         "  COMPREPLY=($(compgen -W \"$words " +
         joined(wordsOf(context.globalOptions), " ") +
         "\" -- \"$current\"))\n"
         "  [[ -z $paths ]] || COMPREPLY+=($(compgen -f -- \"$current\"))\n"
         "}\n"
         "complete -o filenames -F _tlpacscfg tlpacscfg\n";
}

std::string zsh(const Context& context) {
  return "#compdef tlpacscfg\nautoload -U +X bashcompinit && bashcompinit\n" + bash(context);
}

/// In single quotes, for fish and PowerShell.
std::string quoted(std::string_view text, std::string_view quote) {
  std::string result = "'";
  for (const char letter : text) {
    if (letter == '\'') {
      result += quote;
    } else {
      result += letter;
    }
  }
  return result + "'";
}

std::string fish(const Context& context) {
  const auto line = [](const std::string& condition, const Option& option) {
    std::string text = "complete -c tlpacscfg";
    if (!condition.empty()) text += " -n '" + condition + "'";
    if (option.isArgument()) {
      if (takesPath(option)) return text + " -F\n";
      return option.choices.empty() ? std::string()
                                    : text + " -a '" + joined(option.choices, " ") + "'\n";
    }
    text += " -l " + longName(option).substr(2) + " -d " + quoted(option.help, "\\'");
    if (option.value.empty()) return text + "\n";
    if (takesPath(option)) return text + " -r -F\n";
    text += " -x";
    if (!option.choices.empty()) text += " -a '" + joined(option.choices, " ") + "'";
    return text + "\n";
  };
  std::string script = "complete -c tlpacscfg -f\n";
  const std::string names = joined(commandNames(context), " ");
  for (const Option& option : context.globalOptions) script += line("", option);
  for (const auto& command : context.commands) {
    const CommandHelp help = command->help();
    script += "complete -c tlpacscfg -n 'not __fish_seen_subcommand_from " + names + "' -a " +
              help.name + " -d " + quoted(help.summary, "\\'") + "\n";
    for (const Option& option : command->options()) {
      script += line("__fish_seen_subcommand_from " + std::string(help.name), option);
    }
  }
  return script;
}

std::string powershell(const Context& context) {
  const auto list = [](const std::vector<std::string>& words) {
    std::string text;
    for (const std::string& word : words) text += (text.empty() ? "" : ", ") + quoted(word, "''");
    return "@(" + text + ")";
  };
  std::string table;
  for (const auto& command : context.commands) {
    table += "    " + quoted(command->help().name, "''") + " = " +
             list(wordsOf(command->options())) + "\n";
  }
  return "Register-ArgumentCompleter -Native -CommandName tlpacscfg -ScriptBlock {\n"
         "  param($word, $line, $position)\n"
         "  $commands = @{\n" +
         table + "  }\n  $options = " + list(wordsOf(context.globalOptions)) +
         "\n"
         "  $command = $line.CommandElements | ForEach-Object { $_.ToString() } |\n"
         "    Where-Object { $commands.ContainsKey($_) } | Select-Object -First 1\n"
         "  $words = if ($command) { $commands[$command] + $options } else { @($commands.Keys) + "
         "$options }\n"
         "  $words | Where-Object { $_ -like \"$word*\" } | Sort-Object |\n"
         "    ForEach-Object { [System.Management.Automation.CompletionResult]::new($_) }\n"
         "}\n";
}

}  // namespace

std::string completions(const std::string& shell, const Context& context) {
  if (shell == "bash") return bash(context);
  if (shell == "zsh") return zsh(context);
  return shell == "fish" ? fish(context) : powershell(context);
}

}  // namespace tlpacscfg::cli
