#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tlpacscfg::cli {

/// " Did you mean 'list'?" for the known word that is nearest to a misspelt one, without regard to
/// case; empty when none is near.
std::string suggestion(std::string_view word, const std::vector<std::string>& known);

}  // namespace tlpacscfg::cli
