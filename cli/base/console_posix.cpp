#include <signal.h>
#include <termios.h>
#include <unistd.h>

#include <clocale>
#include <csignal>
#include <cstdlib>
#include <iostream>

#include "cli/base/console.h"
#include "support/scope_exit.h"

namespace tlpacscfg::cli {
namespace {

/// The terminal as it was, while nothing that is typed is shown.
termios g_shown{};

/// Ends the program as if it were not caught, and leaves a terminal that shows what is typed.
void endByInterruption(int signal) {
  tcsetattr(STDIN_FILENO, TCSAFLUSH, &g_shown);
  std::signal(signal, SIG_DFL);
  raise(signal);
}

}  // namespace

struct Console::Streams {};

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

bool outputShowsColours() { return outputIsTerminal(); }

std::optional<std::string> askSecret(const std::string& question) {
  std::optional<std::string> secret = std::string();
  tcgetattr(STDIN_FILENO, &g_shown);
  const auto before = std::signal(SIGINT, endByInterruption);
  termios silent = g_shown;
  silent.c_lflag &= ~static_cast<tcflag_t>(ECHO);
  tcsetattr(STDIN_FILENO, TCSAFLUSH, &silent);
  const ScopeExit restored([&] {
    tcsetattr(STDIN_FILENO, TCSAFLUSH, &g_shown);
    std::signal(SIGINT, before);
  });
  std::cerr << question << std::flush;
  if (!std::getline(std::cin, *secret)) secret.reset();
  std::cerr << '\n';
  return secret;
}

}  // namespace tlpacscfg::cli
