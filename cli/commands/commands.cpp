#include "cli/commands/commands.h"

namespace tlpacscfg::cli {

Commands allCommands() {
  Commands commands;
  commands.push_back(doctorCommand());
  commands.push_back(listCommand());
  commands.push_back(showCommand());
  commands.push_back(findCommand());
  commands.push_back(whereUsedCommand());
  commands.push_back(checkCommand());
  commands.push_back(diffCommand());
  commands.push_back(exportCommand());
  commands.push_back(assignCommand());
  commands.push_back(setCommand());
  commands.push_back(copyCommand());
  commands.push_back(deleteCommand());
  commands.push_back(importCommand());
  commands.push_back(editCommand());
  commands.push_back(applyCommand());
  commands.push_back(historyCommand());
  commands.push_back(undoCommand());
  commands.push_back(helpCommand());
  return commands;
}

}  // namespace tlpacscfg::cli
