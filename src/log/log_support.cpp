#include "log/log_support.h"

#include "log/log_file.h"
#include "support/conversions.h"
#include "support/system.h"
#include "support/text.h"

namespace tlpacscfg {

namespace {

constexpr std::uint8_t kLineWidth = 79;
constexpr std::int16_t kFirstDebugLevel = 10;
constexpr std::int16_t kLastDebugLevel = 19;

std::wstring errorBlock(std::wstring_view message) {
  return std::wstring(kLineWidth, L'v') + kLineBreak + FormatTimestamp() + L" ERROR   " +
         std::wstring(message) + kLineBreak + std::wstring(kLineWidth, L'^') + kLineBreak;
}

/// Empty when nothing is to be written at this level.
std::wstring entryText(std::wstring_view message, std::int16_t level) {
  switch (level) {
    case log_level::kInformation:
      return FormatTimestamp() + L" INFO    " + std::wstring(message) + kLineBreak;
    case log_level::kError:
      return errorBlock(message);
    case log_level::kSeparator:
      return PadLeft(message, kLineWidth, message.substr(0, 1)) + kLineBreak;
    default:
      break;
  }
  if (level < kFirstDebugLevel || level > kLastDebugLevel) return {};
  const int depth = level - kFirstDebugLevel + 1;
  if (depth > modLogSupport.g_intDebugMode) return {};
  return FormatTimestamp() + L" DEBUG" + decimal(depth) + L"  " + std::wstring(message) +
         kLineBreak;
}

std::wstring zeroPadded(int number, std::uint8_t width) {
  return PadLeft(decimal(number), width, L"0");
}

}  // namespace

void WriteLog(std::wstring_view message, std::int16_t level) {
  if (modLogSupport.g_strLogFile.empty()) return;
  appendToLogFile(modLogSupport.g_strLogFile, entryText(message, level));
}

void logFailure(const std::wstring& what, const RunTimeError& error) noexcept {
  try {
    WriteLog(
        L"[TLPACSCFG] " + what + L": Error " + decimal(error.number()) + L" " + error.description(),
        log_level::kError);
  } catch (...) {
    // The failure itself has been handled; that it is not in the log changes nothing.
  }
}

std::wstring FormatTimestamp() {
  const system::LocalTime now = system::localTime();
  return zeroPadded(now.year, 4) + L"-" + zeroPadded(now.month, 2) + L"-" + zeroPadded(now.day, 2) +
         L" " + zeroPadded(now.hour, 2) + L":" + zeroPadded(now.minute, 2) + L":" +
         zeroPadded(now.second, 2) + L"." + zeroPadded(now.millisecond, 3);
}

std::wstring PadLeft(std::wstring_view text, std::uint8_t width, std::wstring_view fill) {
  const std::wstring_view trimmed = trimTrailingBlanks(text);
  if (trimmed.size() > width) return std::wstring(text);
  std::wstring run(width - trimmed.size(), L' ');
  if (fill != L" ") run = ReplaceText(std::move(run), L" ", std::wstring(fill));
  return run.append(trimmed);
}

std::wstring ReplaceText(std::wstring text, const std::wstring& find,
                         const std::wstring& replacement) {
  if (find == replacement) return text;
  std::int16_t current = 1;
  while (text.find(find, static_cast<std::size_t>(current - 1)) != text.npos) {
    current = toInt16(static_cast<std::int64_t>(text.find(find)) + 1);
    text = DeleteChars(text, current, static_cast<std::int16_t>(find.size()));
    text = InsertText(text, replacement, current);
  }
  return text;
}

std::wstring DeleteChars(const std::wstring& text, std::int16_t position, std::int16_t count) {
  const auto start = static_cast<std::size_t>(position);
  if (text.size() < start) return text;
  const std::size_t rest = start + static_cast<std::size_t>(count);
  std::wstring kept = text.substr(0, start - 1);
  return text.size() < rest ? kept : kept + text.substr(rest - 1);
}

std::wstring InsertText(const std::wstring& text, const std::wstring& insertion,
                        std::int16_t position) {
  const auto start = static_cast<std::size_t>(position);
  if (text.size() <= start) return text + insertion;
  return text.substr(0, start - 1) + insertion + text.substr(start - 1);
}

}  // namespace tlpacscfg
