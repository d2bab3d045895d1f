#pragma once

#include <optional>
#include <string>

#include "cli/formats/csv_reader.h"

/// CSV files whose lines assign configurations to workstations.
namespace tlpacscfg::cli {

/// The text of a cell without blanks and tabs around it.
std::string trimmed(const CsvCell& cell);

/// Null when the first line is "workstation,configuration".
std::optional<CsvError> headerError(const Csv& csv);

/// The error of a workstation that an earlier line names.
std::string namedTwice(const std::string& workstation, std::size_t earlierLine);

}  // namespace tlpacscfg::cli
