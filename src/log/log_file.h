#pragma once

#include <string>
#include <string_view>

namespace tlpacscfg {

/// Appends the text to the file, which is created when missing, in the system's ANSI code page.
/// Throws PathFileAccess, or DiskFull when not all of the text could be written.
void appendToLogFile(const std::wstring& file, std::wstring_view text);

}  // namespace tlpacscfg
