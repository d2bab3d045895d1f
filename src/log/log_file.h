#pragma once

#include <string>
#include <string_view>

namespace tlpacscfg {

/// Opens the file (creating it when missing), appends the text in the system's ANSI code page, and
/// closes it. Throws PathFileAccess, or DiskFull when not all of the text could be written.
void appendToLogFile(const std::wstring& file, std::wstring_view text);

}  // namespace tlpacscfg
