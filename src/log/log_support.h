#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "support/runtime_error.h"

namespace tlpacscfg {

/// The module-wide settings of the log: an empty file name switches it off; debug lines are
/// written up to the depth.
extern std::wstring g_strLogFile;
extern std::int16_t g_intDebugMode;

namespace log_level {
inline constexpr std::int16_t kInformation = 0;
inline constexpr std::int16_t kError = 1;
inline constexpr std::int16_t kSeparator = 2;
/// Debug lines of depth 1 to 10 are the levels 10 to 19.
inline constexpr std::int16_t kOutcome = 16;
inline constexpr std::int16_t kOperation = 18;
inline constexpr std::int16_t kStatementText = 19;
}  // namespace log_level

/// Appends one entry to the log file, which is on disk when the call returns.
/// Throws PathFileAccess when the file cannot be written.
void WriteLog(std::wstring_view message, std::int16_t level);

/// Writes an error entry about a failure that nobody is told of otherwise: "[TLPACSCFG] ", what
/// failed, the number and the description. A log that cannot be written is no further failure.
void logFailure(const std::wstring& what, const RunTimeError& error) noexcept;

/// The local time as YYYY-MM-DD HH:MM:SS.mmm.
std::wstring FormatTimestamp();

/// The text right-aligned in `width` columns, the columns before it filled; never cut.
std::wstring PadLeft(std::wstring_view text, std::uint8_t width, std::wstring_view fill);

/// Replaces every occurrence by deleting and inserting it. `replacement` must not contain `find`,
/// or the call never ends.
std::wstring ReplaceText(std::wstring text, const std::wstring& find,
                         const std::wstring& replacement);

/// Positions count from 1. An insertion at the last character or behind it goes to the end.
std::wstring DeleteChars(const std::wstring& text, std::int16_t position, std::int16_t count);
std::wstring InsertText(const std::wstring& text, const std::wstring& insertion,
                        std::int16_t position);

}  // namespace tlpacscfg
