#pragma once

#include <filesystem>

namespace tlpacscfg::cli {

/// Makes an empty folder among the temporary files, which only the user can open. Throws Failure.
std::filesystem::path makePrivateFolder();

}  // namespace tlpacscfg::cli
