#include "cli/base/console.h"

#include <iostream>

namespace tlpacscfg::cli {

bool usesColours() {
  return outputIsTerminal() && environmentValue("NO_COLOR").value_or("").empty();
}

bool askYesNo(const std::string& question) {
  std::cerr << question << " [y/N] " << std::flush;
  std::string answer;
  std::getline(std::cin, answer);
  return answer == "y" || answer == "Y" || answer == "yes";
}

void say(const std::string& line) {
  std::cout.flush();
  std::cerr << line << '\n';
}

}  // namespace tlpacscfg::cli
