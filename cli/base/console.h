#pragma once

#include <optional>
#include <string>
#include <vector>

/// The terminal and the environment of the program. All texts are UTF-8.
namespace tlpacscfg::cli {

/// Lets the program write UTF-8, and bytes as they are, while it exists.
class Console {
 public:
  Console();
  // NOLINTNEXTLINE(performance-trivially-destructible): on Windows it is not.
  ~Console();
  Console(const Console&) = delete;
  Console& operator=(const Console&) = delete;

 private:
  [[maybe_unused]] unsigned codePageBefore_ = 0;  ///< On Windows.
};

/// Without the program's name.
std::vector<std::string> programArguments(int count, char** arguments);

std::optional<std::string> environmentValue(const char* name);

bool inputIsTerminal();
bool outputIsTerminal();
bool errorsAreTerminal();

/// Whether what is written to standard output may have colours: on a terminal, without NO_COLOR.
bool usesColours();

/// Asks on the terminal and shows nothing of what is typed. Only for an input that is a terminal.
std::string askSecret(const std::string& question);

/// Asks on the terminal; true for "y" and "yes". Only for an input that is a terminal.
bool askYesNo(const std::string& question);

/// A line of the program's own on standard error.
void say(const std::string& line);

}  // namespace tlpacscfg::cli
