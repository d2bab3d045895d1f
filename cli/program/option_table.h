#pragma once

#include <string>
#include <vector>

#include "cli/base/option.h"
#include "cli/program/context.h"

/// What is made from the option tables beside parsing and help.
namespace tlpacscfg::cli {

/// For `man`: the page tlpacscfg(1).
std::string manualPage(const Context& context);

/// The script that completes command lines in "bash", "zsh", "fish" or "powershell".
std::string completions(const std::string& shell, const Context& context);

}  // namespace tlpacscfg::cli
