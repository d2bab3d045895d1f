#include <windows.h>

#include <stdexcept>

#include "benchmarks/measurements.h"
#include "benchmarks/measuring.h"
#include "log/log_support.h"
#include "support/handle_win.h"

namespace tlpacscfg::bench {
namespace {

constexpr int kLines = 10'000;
constexpr const wchar_t* kMessage = L"[TLPACSCFG] TlCommClient connected successfully";
constexpr std::string_view kLine =
    "2024-09-09 11:20:36.123 INFO    [TLPACSCFG] TlCommClient connected successfully\r\n";

void appendLine(const std::wstring& file) {
  const FileHandle handle(CreateFileW(file.c_str(), FILE_APPEND_DATA, FILE_SHARE_READ, nullptr,
                                      OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
  DWORD written = 0;
  if (!handle ||
      !WriteFile(handle.get(), kLine.data(), static_cast<DWORD>(kLine.size()), &written, nullptr)) {
    throw std::runtime_error("The bare log could not be written.");
  }
}

}  // namespace

void measureLog(const std::wstring& folder, int repetitions) {
  const std::wstring bareLog = folder + L"\\bare.log";
  const std::wstring log = folder + L"\\component.log";
  compare("log", 0, repetitions,
          {[] {
             for (int i = 0; i < kLines; ++i) WriteLog(kMessage, log_level::kInformation);
           },
           [&] {
             DeleteFileW(log.c_str());
             modLogSupport.g_strLogFile = log;
           }},
          {[&] {
             for (int i = 0; i < kLines; ++i) appendLine(bareLog);
           },
           [&] { DeleteFileW(bareLog.c_str()); }});
  modLogSupport.g_strLogFile.clear();
}

}  // namespace tlpacscfg::bench
