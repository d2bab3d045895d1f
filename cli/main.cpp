#include "cli/base/console.h"
#include "cli/commands/commands.h"
#include "cli/program/program.h"

int main(int count, char** arguments) {
  using namespace tlpacscfg::cli;
  const Console console;
  return static_cast<int>(runProgram(allCommands(), programArguments(count, arguments)));
}
