#pragma once

#include <string>
#include <utility>
#include <vector>

namespace tlpacscfg::service {

using JournalFields = std::vector<std::pair<const char*, std::string>>;

/// Writes the line `time=... event=EVENT NAME=VALUE...` to standard output and flushes it.
/// Thread-safe.
void writeJournal(const char* event, const JournalFields& fields = {});

/// `event=EVENT NAME=VALUE...`. A value that is not one plain word stands between double quotes,
/// with a backslash before quotes and backslashes, and control characters as \xNN.
std::string journalText(const char* event, const JournalFields& fields);

}  // namespace tlpacscfg::service
