#pragma once

#include <string>
#include <vector>

namespace tlpacscfg::cli {

/// The ODBC drivers of this computer; on Windows those of 64-bit and of 32-bit programs, which have
/// lists of their own.
std::vector<std::string> installedDrivers();

}  // namespace tlpacscfg::cli
