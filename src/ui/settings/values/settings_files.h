#pragma once

#include <string>
#include <vector>

namespace tlpacscfg {

/// The names of the XML mapping files in the prompts directory of the network root directory,
/// without the two of the system, which are never offered. None when the directory cannot be read.
std::vector<std::wstring> promptXmlFiles();

}  // namespace tlpacscfg
