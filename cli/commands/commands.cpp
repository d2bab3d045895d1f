#include "cli/commands/commands.h"

namespace tlpacscfg::cli {

Commands allCommands() {
  Commands commands;
  commands.push_back(listCommand());
  commands.push_back(showCommand());
  return commands;
}

}  // namespace tlpacscfg::cli
