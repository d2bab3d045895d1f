#pragma once

#include <string>

namespace tlpacscfg::service {

/// Writes one line, with the time before it, to standard output and flushes it. Thread-safe.
void writeJournal(const std::string& line);

}  // namespace tlpacscfg::service
