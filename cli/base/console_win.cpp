#include <windows.h>

#include <fcntl.h>
#include <io.h>
#include <shellapi.h>

#include <cstdio>
#include <cstdlib>
#include <cwchar>
#include <iostream>
#include <streambuf>

#include "cli/base/console.h"
#include "support/scope_exit.h"
#include "support/text.h"

namespace tlpacscfg::cli {

namespace {

/// Writes UTF-8 to a console, which could otherwise get a character in pieces.
class ConsoleBuffer : public std::streambuf {
 public:
  explicit ConsoleBuffer(HANDLE console) : console_(console) {}

 protected:
  int_type overflow(int_type byte) override {
    if (traits_type::eq_int_type(byte, traits_type::eof())) return traits_type::not_eof(byte);
    pending_ += traits_type::to_char_type(byte);
    return pending_.back() == '\n' && sync() != 0 ? traits_type::eof() : byte;
  }

  int sync() override {
    const std::wstring text = fromUtf8(pending_);
    pending_.clear();
    DWORD written = 0;
    const auto length = static_cast<DWORD>(text.size());
    return length == 0 || WriteConsoleW(console_, text.data(), length, &written, nullptr) ? 0 : -1;
  }

 private:
  HANDLE console_;
  std::string pending_;
};

/// While it exists, a stream writes to the console that is its output; one that is none stays.
class ConsoleStream {
 public:
  ConsoleStream(std::ostream& stream, DWORD output)
      : stream_(stream), console_(GetStdHandle(output)), buffer_(console_) {
    if (!GetConsoleMode(console_, &modeBefore_)) return;
    // Lets the console understand colours.
    SetConsoleMode(console_, modeBefore_ | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
    bufferBefore_ = stream.rdbuf(&buffer_);
  }
  ~ConsoleStream() {
    stream_.flush();
    if (bufferBefore_ == nullptr) return;
    stream_.rdbuf(bufferBefore_);
    SetConsoleMode(console_, modeBefore_);
  }
  ConsoleStream(const ConsoleStream&) = delete;
  ConsoleStream& operator=(const ConsoleStream&) = delete;

 private:
  std::ostream& stream_;
  HANDLE console_;
  ConsoleBuffer buffer_;
  std::streambuf* bufferBefore_ = nullptr;
  DWORD modeBefore_ = 0;
};

}  // namespace

struct Console::Streams {
  ConsoleStream output{std::cout, STD_OUTPUT_HANDLE};
  ConsoleStream errors{std::cerr, STD_ERROR_HANDLE};
};

Console::Console() : streams_(std::make_unique<Streams>()) {
  // Lines end the same way on every system; CSV has line ends of its own.
  _setmode(_fileno(stdin), _O_BINARY);
  _setmode(_fileno(stdout), _O_BINARY);
  _setmode(_fileno(stderr), _O_BINARY);
}

Console::~Console() = default;

std::vector<std::string> programArguments(int, char**) {
  int count = 0;
  wchar_t** const wide = CommandLineToArgvW(GetCommandLineW(), &count);
  if (wide == nullptr) return {};
  const ScopeExit freed([&] { LocalFree(static_cast<HLOCAL>(wide)); });
  std::vector<std::string> arguments;
  for (int i = 1; i < count; ++i) arguments.push_back(toUtf8(wide[i]));
  return arguments;
}

std::optional<std::string> environmentValue(const char* name) {
  const wchar_t* const value = _wgetenv(fromUtf8(name).c_str());
  return value != nullptr ? std::optional<std::string>(toUtf8(value)) : std::nullopt;
}

// A pipe and a file have no console mode; a device such as NUL, which counts as a terminal
// elsewhere, has none either.
static bool isConsole(DWORD stream) {
  DWORD mode = 0;
  return GetConsoleMode(GetStdHandle(stream), &mode) != 0;
}

bool inputIsTerminal() { return isConsole(STD_INPUT_HANDLE); }
bool outputIsTerminal() { return isConsole(STD_OUTPUT_HANDLE); }
bool errorsAreTerminal() { return isConsole(STD_ERROR_HANDLE); }

bool outputShowsColours() {
  DWORD mode = 0;
  return GetConsoleMode(GetStdHandle(STD_OUTPUT_HANDLE), &mode) &&
         (mode & ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0;
}

std::optional<std::string> askSecret(const std::string& question) {
  const HANDLE input = GetStdHandle(STD_INPUT_HANDLE);
  DWORD before = 0;
  GetConsoleMode(input, &before);
  SetConsoleMode(input, (before & ~static_cast<DWORD>(ENABLE_ECHO_INPUT)) | ENABLE_LINE_INPUT);
  const ScopeExit restored([&] { SetConsoleMode(input, before); });
  std::cerr << question << std::flush;
  wchar_t typed[512];
  DWORD length = 0;
  const BOOL isRead =
      ReadConsoleW(input, typed, static_cast<DWORD>(std::size(typed)), &length, nullptr);
  std::wstring secret(typed, length);
  SecureZeroMemory(typed, sizeof(typed));
  while (!secret.empty() && (secret.back() == L'\r' || secret.back() == L'\n')) secret.pop_back();
  std::cerr << '\n';
  // Ctrl+C gives nothing, Ctrl+Z at the begin of the line ends the input.
  if (!isRead || length == 0 || secret.starts_with(L'\x1A')) return std::nullopt;
  return toUtf8(secret);
}

}  // namespace tlpacscfg::cli
