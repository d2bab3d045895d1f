#include <windows.h>

#include <algorithm>

#include "cli/formats/replace_file.h"
#include "support/handle_win.h"

namespace tlpacscfg::cli {
namespace {

namespace fs = std::filesystem;

std::error_code lastError() { return {static_cast<int>(GetLastError()), std::system_category()}; }

}  // namespace

std::error_code writeInPlace(const fs::path& path, std::string_view content, Lasting lasting) {
  const FileHandle file(CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                    FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!file) return lastError();
  constexpr std::size_t kMaxWrite = 1U << 24U;
  while (!content.empty()) {
    const auto size = static_cast<DWORD>(std::min(content.size(), kMaxWrite));
    DWORD written = 0;
    if (!WriteFile(file.get(), content.data(), size, &written, nullptr)) return lastError();
    content.remove_prefix(written);
  }
  if (lasting == Lasting::Yes && !FlushFileBuffers(file.get())) return lastError();
  return {};
}

std::error_code moveOver(const fs::path& from, const fs::path& to, Lasting lasting) {
  DWORD how = MOVEFILE_REPLACE_EXISTING;
  if (lasting == Lasting::Yes) how |= MOVEFILE_WRITE_THROUGH;
  return MoveFileExW(from.c_str(), to.c_str(), how) ? std::error_code() : lastError();
}

// The system keeps no folder in memory.
void makeFolderLast(const fs::path&) {}

}  // namespace tlpacscfg::cli
