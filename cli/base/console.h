#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

/// The terminal and the environment of the program. All texts are UTF-8.
namespace tlpacscfg::cli {

/// Lets the program write UTF-8, and bytes as they are, while it exists.
class Console {
 public:
  Console();
  ~Console();
  Console(const Console&) = delete;
  Console& operator=(const Console&) = delete;

 private:
  struct Streams;
  std::unique_ptr<Streams> streams_;  ///< Null where the program's own streams will do.
};

/// Without the program's name.
std::vector<std::string> programArguments(int count, char** arguments);

std::optional<std::string> environmentValue(const char* name);

bool inputIsTerminal();
bool outputIsTerminal();
bool errorsAreTerminal();
bool outputShowsColours();

/// Whether what is written to standard output may have colours: on a terminal, without NO_COLOR.
bool usesColours();

/// Asks on the terminal and shows nothing of what is typed; null at the end of the input. Only for
/// an input that is a terminal.
std::optional<std::string> askSecret(const std::string& question);

/// Asks on the terminal; true for "y" and "yes", false for all else and at the end of the input.
/// Only for an input that is a terminal.
bool askYesNo(const std::string& question);

/// A line of the program's own on standard error.
void say(const std::string& line);

}  // namespace tlpacscfg::cli
