#include <windows.h>

#include "log/log_file.h"
#include "support/runtime_error.h"
#include "support/handle_win.h"

namespace tlpacscfg {
namespace {

std::string toAnsi(std::wstring_view text) {
  const auto convert = [&](char* target, int bytes) {
    return WideCharToMultiByte(CP_ACP, 0, text.data(), static_cast<int>(text.size()), target, bytes,
                               nullptr, nullptr);
  };
  std::string ansi(text.size() * 2, '\0');
  int bytes = convert(ansi.data(), static_cast<int>(ansi.size()));
  if (bytes == 0 && !text.empty()) {
    ansi.resize(static_cast<std::size_t>(convert(nullptr, 0)));
    bytes = convert(ansi.data(), static_cast<int>(ansi.size()));
  }
  ansi.resize(static_cast<std::size_t>(bytes));
  return ansi;
}

}  // namespace

void appendToLogFile(const std::wstring& file, std::wstring_view text) {
  const FileHandle handle(CreateFileW(file.c_str(), FILE_APPEND_DATA, FILE_SHARE_READ, nullptr,
                                      OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!handle) raise(ErrorNumber::PathFileAccess);
  const std::string bytes = toAnsi(text);
  DWORD written = 0;
  const BOOL done =
      WriteFile(handle.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
  if (!done || written != bytes.size()) raise(ErrorNumber::DiskFull);
}

}  // namespace tlpacscfg
