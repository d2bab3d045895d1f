#pragma once

#include <string>
#include <variant>
#include <vector>

namespace tlpacscfg::cli {

/// One line of a command's table of options and arguments. Parsing, help, the manual page and the
/// completions are made from it.
struct Option {
  /// "-y,--yes"; without a dash it is the name of an argument: "WORKSTATION".
  std::string names;
  /// What it takes: "FILE". Empty for a flag, and for an argument.
  std::string value;
  std::string help;
  /// Where the value goes; it outlives the program's run.
  std::variant<bool*, int*, std::string*, std::vector<std::string>*> target;
  bool required = false;
  /// The values that are allowed; empty when there are others.
  std::vector<std::string> choices = {};

  bool isArgument() const { return !names.starts_with('-'); }
};

}  // namespace tlpacscfg::cli
