#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "support/runtime_error.h"

namespace tlpacscfg {

/// The variables of module modLogSupport; modMain says which thread may use them.
struct ModLogSupport {
  std::wstring g_strLogFile;        ///< Empty: nothing is logged.
  std::int16_t g_intDebugMode = 0;  ///< Debug lines are written up to this depth.
};
inline ModLogSupport modLogSupport;

namespace log_level {
inline constexpr std::int16_t kInformation = 0;
inline constexpr std::int16_t kError = 1;
inline constexpr std::int16_t kSeparator = 2;
/// Debug lines of depth 1 to 10 are the levels 10 to 19.
inline constexpr std::int16_t kOutcome = 16;
inline constexpr std::int16_t kOperation = 18;
inline constexpr std::int16_t kStatementText = 19;
}  // namespace log_level

/// Appends one entry and closes the file. Throws PathFileAccess when the file cannot be opened.
void WriteLog(std::wstring_view message, std::int16_t level);

/// Writes an error entry for a failure that is not reported otherwise: "[TLPACSCFG] ", what failed,
/// the number and the description. Ignores that the log cannot be written.
void logFailure(const std::wstring& what, const RunTimeError& error) noexcept;

/// The local time as YYYY-MM-DD HH:MM:SS.mmm.
std::wstring FormatTimestamp();

/// The text right-aligned in `width` columns, the columns before it filled; never cut.
std::wstring PadLeft(std::wstring_view text, std::uint8_t width, std::wstring_view fill);

/// Replaces every occurrence. Does not return when `replacement` contains `find`.
std::wstring ReplaceText(std::wstring text, const std::wstring& find,
                         const std::wstring& replacement);

/// Positions count from 1. An insertion at or after the last character goes to the end.
std::wstring DeleteChars(const std::wstring& text, std::int16_t position, std::int16_t count);
std::wstring InsertText(const std::wstring& text, const std::wstring& insertion,
                        std::int16_t position);

}  // namespace tlpacscfg
