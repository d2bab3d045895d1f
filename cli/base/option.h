#pragma once

#include <limits>
#include <string>
#include <variant>
#include <vector>

namespace tlpacscfg::cli {

/// Where a number goes, and which are allowed.
struct Number {
  int* target;
  int min;
  int max = std::numeric_limits<int>::max();

  /// Why the text is not such a number; empty when it is one.
  std::string complaintAbout(const std::string& text) const;
};

/// One line of a command's table of options and arguments. Parsing, help, the manual page and the
/// completions are made from it.
struct Option {
  /// "-y,--yes"; without a dash it is the name of an argument: "WORKSTATION".
  std::string names;
  /// What it takes: "FILE". Empty for a flag, and for an argument.
  std::string value;
  std::string help;
  /// Where the value goes; it outlives the program's run.
  std::variant<bool*, Number, std::string*, std::vector<std::string>*> target;
  bool required = false;
  /// The values that are allowed; empty when there are others.
  std::vector<std::string> choices = {};

  bool isArgument() const { return !names.starts_with('-'); }
};

}  // namespace tlpacscfg::cli
