#include "cli/connection/secret.h"

#include <iostream>
#include <utility>

#include "cli/formats/files.h"
#include "cli/base/console.h"
#include "cli/base/failure.h"
#include "shared/token_file.h"
#include "support/scope_exit.h"
#include "support/secret.h"
#include "support/text.h"

namespace tlpacscfg::cli {
namespace {

constexpr const char* kVariable = "TLPACSCFG_PASSWORD";

/// Wipes the text.
std::wstring taken(std::string text) {
  const ScopeExit wiped([&] { wipeMemory(text.data(), text.size()); });
  return fromUtf8(text);
}

}  // namespace

std::wstring readSecret(const ConnectionOptions& options, const std::string& what,
                        IfMissing ifMissing) {
  if (!options.passwordFile.empty()) {
    std::string content = readFile(options.passwordFile);
    const ScopeExit wiped([&] { wipeMemory(content.data(), content.size()); });
    return taken(remote::tokenIn(content));
  }
  if (options.passwordFromInput) {
    std::string line;
    std::getline(std::cin, line);
    if (line.ends_with('\r')) line.pop_back();
    return taken(std::move(line));
  }
  if (auto value = environmentValue(kVariable)) return taken(std::move(*value));
  if (ifMissing == IfMissing::Empty) return {};
  if (!inputIsTerminal()) {
    throw Failure(ExitCode::Usage, "There is no " + what +
                                       ". Use --password-file, --password-stdin or the environment "
                                       "variable " +
                                       kVariable + ".");
  }
  if (auto typed = askSecret("The " + what + ": ")) return taken(std::move(*typed));
  throw Failure(ExitCode::Usage, "There is no " + what + ".");
}

}  // namespace tlpacscfg::cli
