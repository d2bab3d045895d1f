#include <termios.h>
#include <unistd.h>

#include <clocale>
#include <cstdlib>
#include <iostream>

#include "cli/base/console.h"
#include "support/scope_exit.h"

namespace tlpacscfg::cli {

// The driver manager uses the locale to convert texts for drivers without Unicode functions.
Console::Console() {
  if (std::setlocale(LC_CTYPE, "C.UTF-8") == nullptr) std::setlocale(LC_CTYPE, "");
}

Console::~Console() = default;

std::vector<std::string> programArguments(int count, char** arguments) {
  return {arguments + 1, arguments + count};
}

std::optional<std::string> environmentValue(const char* name) {
  const char* const value = std::getenv(name);
  return value != nullptr ? std::optional<std::string>(value) : std::nullopt;
}

bool inputIsTerminal() { return isatty(STDIN_FILENO) == 1; }
bool outputIsTerminal() { return isatty(STDOUT_FILENO) == 1; }
bool errorsAreTerminal() { return isatty(STDERR_FILENO) == 1; }

std::string askSecret(const std::string& question) {
  std::cerr << question << std::flush;
  termios before{};
  tcgetattr(STDIN_FILENO, &before);
  termios silent = before;
  silent.c_lflag &= ~static_cast<tcflag_t>(ECHO);
  tcsetattr(STDIN_FILENO, TCSAFLUSH, &silent);
  const ScopeExit restored([&] { tcsetattr(STDIN_FILENO, TCSAFLUSH, &before); });
  std::string secret;
  std::getline(std::cin, secret);
  std::cerr << '\n';
  return secret;
}

}  // namespace tlpacscfg::cli
