#include <algorithm>

#include "cli/program/option_table.h"
#include "host/version.h"

namespace tlpacscfg::cli {
namespace {

/// A text in troff: backslashes and dashes as themselves, and no line that looks like a request.
std::string escaped(std::string_view text) {
  std::string result;
  for (const char letter : text) {
    if (letter == '\\') {
      result += "\\e";
    } else if (letter == '-') {
      result += "\\-";
    } else {
      if ((letter == '.' || letter == '\'') && (result.empty() || result.back() == '\n')) {
        result += "\\&";
      }
      result += letter;
    }
  }
  return result;
}

std::string lineOf(const Option& option) {
  std::string text = ".TP\n.B " + escaped(option.names);
  if (!option.value.empty()) text += " \\fI" + escaped(option.value) + "\\fR";
  return text + "\n" + escaped(option.help) + ".\n";
}

std::string examplesOf(std::string_view examples) {
  return ".PP\n.EX\n" + escaped(examples) + ".EE\n";
}

}  // namespace

std::string manualPage(const Context& context) {
  std::string page =
      ".TH TLPACSCFG 1 \"\" \"tlpacscfg " + std::to_string(kVersionMajor) + "." +
      std::to_string(kVersionMinor) + "." + std::to_string(kVersionRevision) +
      "\"\n"
      ".SH NAME\ntlpacscfg \\- look after the configurations and workstations of a site\n"
      ".SH SYNOPSIS\n.B tlpacscfg\n[\\fIconnection\\fR] \\fICOMMAND\\fR [\\fIoptions\\fR]\n"
      ".SH DESCRIPTION\nResults are written to standard output, all else to standard error. "
      "Without a terminal nothing is asked.\n";
  page += ".SH OPTIONS\nThey may stand before or after the command.\n";
  for (const Option& option : context.globalOptions) page += lineOf(option);
  page += ".SH COMMANDS\n";
  for (const auto& command : context.commands) {
    const CommandHelp help = command->help();
    std::string usage = help.name;
    for (const Option& option : command->options()) {
      if (option.isArgument()) usage += " " + option.names;
    }
    page += ".SS " + escaped(usage) + "\n" + escaped(help.summary) + ".\n";
    for (const Option& option : command->options()) page += lineOf(option);
    page += examplesOf(help.examples);
  }
  const std::string codes = exitCodesText();
  page += ".SH EXIT STATUS\n.EX\n" + escaped(codes.substr(codes.find("\n\n") + 2)) + ".EE\n";
  page +=
      ".SH ENVIRONMENT\n.TP\n.B TLPACSCFG_PASSWORD\nThe password or token.\n"
      ".TP\n.B NO_COLOR\nNo colours on a terminal.\n";
  return page;
}

}  // namespace tlpacscfg::cli
