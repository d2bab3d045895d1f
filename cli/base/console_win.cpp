#include <windows.h>

#include <fcntl.h>
#include <io.h>
#include <shellapi.h>

#include <cstdio>
#include <cstdlib>
#include <cwchar>
#include <iostream>

#include "cli/base/console.h"
#include "support/scope_exit.h"
#include "support/text.h"

namespace tlpacscfg::cli {

Console::Console() : codePageBefore_(GetConsoleOutputCP()) {
  SetConsoleOutputCP(CP_UTF8);
  // Lines end the same way on every system; CSV has line ends of its own.
  _setmode(_fileno(stdin), _O_BINARY);
  _setmode(_fileno(stdout), _O_BINARY);
  _setmode(_fileno(stderr), _O_BINARY);
}

Console::~Console() {
  std::cout.flush();
  if (codePageBefore_ != 0) SetConsoleOutputCP(codePageBefore_);
}

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

std::string askSecret(const std::string& question) {
  std::cerr << question << std::flush;
  const HANDLE input = GetStdHandle(STD_INPUT_HANDLE);
  DWORD before = 0;
  GetConsoleMode(input, &before);
  SetConsoleMode(input, (before & ~static_cast<DWORD>(ENABLE_ECHO_INPUT)) | ENABLE_LINE_INPUT);
  const ScopeExit restored([&] { SetConsoleMode(input, before); });
  wchar_t typed[512];
  DWORD length = 0;
  ReadConsoleW(input, typed, static_cast<DWORD>(std::size(typed)), &length, nullptr);
  std::wstring secret(typed, length);
  SecureZeroMemory(typed, sizeof(typed));
  while (!secret.empty() && (secret.back() == L'\r' || secret.back() == L'\n')) secret.pop_back();
  std::cerr << '\n';
  return toUtf8(secret);
}

}  // namespace tlpacscfg::cli
