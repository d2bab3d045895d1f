#pragma once

#include <string>
#include <vector>

namespace tlpacscfg {

/// The names of the XML mapping files in the prompts directory of the network root directory: by
/// the remote data client when it is connected, else by searching the directory. None when the
/// directory is missing or the client fails. Two files of the system are never offered.
std::vector<std::wstring> promptXmlFiles();

/// Without the files that are never offered, compared without regard to case.
std::vector<std::wstring> offeredXmlFiles(std::vector<std::wstring> files);

/// The names of the files that match "*.XML" in a directory, in the order of the system.
std::vector<std::wstring> findXmlFiles(const std::wstring& directory);

}  // namespace tlpacscfg
