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

volatile std::sig_atomic_t g_interruption = 0;

/// While it exists, Ctrl+C ends a read instead of the program; its end ends the program then.
class Interruption {
 public:
  Interruption() {
    struct sigaction noting {};
    // Without SA_RESTART: the read fails.
    noting.sa_handler = [](int signal) { g_interruption = signal; };
    sigaction(SIGINT, &noting, &before_);
  }
  ~Interruption() {
    sigaction(SIGINT, &before_, nullptr);
    if (g_interruption != 0) raise(SIGINT);
  }
  Interruption(const Interruption&) = delete;
  Interruption& operator=(const Interruption&) = delete;

 private:
  struct sigaction before_ {};
};

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
  {
    const Interruption interruption;
    termios before{};
    tcgetattr(STDIN_FILENO, &before);
    termios silent = before;
    silent.c_lflag &= ~static_cast<tcflag_t>(ECHO);
    tcsetattr(STDIN_FILENO, TCSAFLUSH, &silent);
    const ScopeExit restored([&] { tcsetattr(STDIN_FILENO, TCSAFLUSH, &before); });
    std::cerr << question << std::flush;
    if (!std::getline(std::cin, *secret)) secret.reset();
    std::cerr << '\n';
  }
  return secret;
}

}  // namespace tlpacscfg::cli
