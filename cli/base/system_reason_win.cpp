#include <windows.h>

#include <array>

#include "cli/base/system_reason.h"
#include "support/text.h"

namespace tlpacscfg::cli {

// The library's own text is in the code page of the system.
std::string systemReason(const std::error_code& error) {
  if (error.category() != std::system_category()) return error.message();
  std::array<wchar_t, 512> text;
  const DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
                                      nullptr, static_cast<DWORD>(error.value()), 0, text.data(),
                                      static_cast<DWORD>(text.size()), nullptr);
  std::wstring_view reason(text.data(), length);
  while (!reason.empty() && std::wstring_view(L" .\r\n").find(reason.back()) != reason.npos) {
    reason.remove_suffix(1);
  }
  return reason.empty() ? "error " + std::to_string(error.value()) : toUtf8(reason);
}

}  // namespace tlpacscfg::cli
