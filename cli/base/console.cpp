#include "cli/base/console.h"

#include <iostream>

#include "cli/base/progress.h"

namespace tlpacscfg::cli {

bool usesColours() {
  return outputShowsColours() && environmentValue("NO_COLOR").value_or("").empty();
}

bool askYesNo(const std::string& question) {
  std::cerr << question << " [y/N] " << std::flush;
  std::string answer;
  // The end of the input leaves the cursor after the question.
  if (!std::getline(std::cin, answer)) std::cerr << '\n';
  if (answer.ends_with('\r')) answer.pop_back();
  return answer == "y" || answer == "Y" || answer == "yes";
}

void say(const std::string& line) {
  std::cout.flush();
  const auto lock = Progress::hidden();
  std::cerr << line << '\n';
}

}  // namespace tlpacscfg::cli
