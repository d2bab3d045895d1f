#include <algorithm>
#include <iostream>

#include "cli/base/failure.h"
#include "cli/base/suggestion.h"
#include "cli/commands/commands.h"
#include "cli/program/context.h"
#include "cli/program/option_table.h"

namespace tlpacscfg::cli {
namespace {

class Help : public Command {
 public:
  CommandHelp help() const override {
    return {.name = "help",
            .summary = "Explain a command, the exit codes; print the manual page or completions",
            .examples =
                "  tlpacscfg help check\n"
                "  tlpacscfg help exit-codes\n"
                "  tlpacscfg help man > tlpacscfg.1\n"
                "  tlpacscfg help bash > /etc/bash_completion.d/tlpacscfg\n"};
  }

  std::vector<Option> options() override {
    return {{.names = "TOPIC",
             .value = "",
             .help = "A command, exit-codes, man, or the shell to complete command lines in: bash, "
                     "zsh, fish, powershell",
             .target = &topic_}};
  }

  ExitCode run(Context& context) override {
    std::cout << textOf(context);
    return ExitCode::Done;
  }

 private:
  std::string textOf(const Context& context) const {
    constexpr const char* kShells[] = {"bash", "zsh", "fish", "powershell"};
    if (topic_.empty()) return context.helpText("");
    if (topic_ == "exit-codes") return exitCodesText();
    if (topic_ == "man") return manualPage(context);
    if (std::ranges::find(kShells, topic_) != std::end(kShells)) {
      return completions(topic_, context);
    }
    std::vector<std::string> topics = {"exit-codes", "man"};
    topics.insert(topics.end(), std::begin(kShells), std::end(kShells));
    for (const auto& command : context.commands) {
      if (command->help().name == topic_) return context.helpText(topic_);
      topics.emplace_back(command->help().name);
    }
    throw Failure(ExitCode::Usage, "There is no help about '" + topic_ + "'." +
                                       suggestion(topic_, topics) +
                                       " Name a command, exit-codes, man or a shell.");
  }

  std::string topic_;
};

}  // namespace

std::unique_ptr<Command> helpCommand() { return std::make_unique<Help>(); }

}  // namespace tlpacscfg::cli
