#pragma once

#include "cli/program/command.h"

namespace tlpacscfg::cli {

/// Every command of the program, in the order of its help.
Commands allCommands();

// Each in the file of its name.
std::unique_ptr<Command> checkCommand();
std::unique_ptr<Command> diffCommand();
std::unique_ptr<Command> doctorCommand();
std::unique_ptr<Command> exportCommand();
std::unique_ptr<Command> findCommand();
std::unique_ptr<Command> helpCommand();
std::unique_ptr<Command> listCommand();
std::unique_ptr<Command> showCommand();
std::unique_ptr<Command> whereUsedCommand();
std::unique_ptr<Command> assignCommand();
std::unique_ptr<Command> setCommand();
std::unique_ptr<Command> copyCommand();
std::unique_ptr<Command> deleteCommand();
std::unique_ptr<Command> importCommand();
std::unique_ptr<Command> editCommand();
std::unique_ptr<Command> applyCommand();
std::unique_ptr<Command> historyCommand();
std::unique_ptr<Command> undoCommand();

}  // namespace tlpacscfg::cli
