#pragma once

#include <string>

namespace tlpacscfg::service {

/// Writes one line with the time before it to standard output, which holds it when this returns.
/// Threads may write at once.
void writeJournal(const std::string& line);

}  // namespace tlpacscfg::service
