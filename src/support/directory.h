#pragma once

#include <string>
#include <vector>

namespace tlpacscfg {

/// The names of the files that match "*.XML" in a directory, in the order of the system; none when
/// it cannot be read.
std::vector<std::wstring> findXmlFiles(const std::wstring& directory);

}  // namespace tlpacscfg
