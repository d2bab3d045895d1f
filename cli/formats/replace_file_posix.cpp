#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

#include "cli/formats/replace_file.h"
#include "support/scope_exit.h"

namespace tlpacscfg::cli {
namespace {

namespace fs = std::filesystem;

std::error_code lastError() { return {errno, std::generic_category()}; }

std::error_code writeAll(int file, std::string_view content) {
  while (!content.empty()) {
    const ssize_t written = ::write(file, content.data(), content.size());
    if (written < 0 && errno != EINTR) return lastError();
    if (written > 0) content.remove_prefix(static_cast<std::size_t>(written));
  }
  return {};
}

std::error_code syncFolder(const fs::path& path) {
  const int folder = ::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (folder < 0) return lastError();
  const ScopeExit closed([&] { ::close(folder); });
  return fsync(folder) == 0 ? std::error_code() : lastError();
}

}  // namespace

std::error_code writeInPlace(const fs::path& path, std::string_view content, Lasting lasting) {
  constexpr mode_t kForAll = 0666;
  const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, kForAll);
  if (file < 0) return lastError();
  std::error_code error = writeAll(file, content);
  if (!error && lasting == Lasting::Yes && fsync(file) != 0) error = lastError();
  if (close(file) != 0 && !error) error = lastError();
  return error;
}

std::error_code moveOver(const fs::path& from, const fs::path& to, Lasting lasting) {
  if (std::rename(from.c_str(), to.c_str()) != 0) return lastError();
  if (lasting == Lasting::No) return {};
  return syncFolder(to.has_parent_path() ? to.parent_path() : ".");
}

void makeFolderLast(const fs::path& folder) {
  std::error_code ignored;
  for (fs::path path = fs::absolute(folder, ignored); path != path.root_path();
       path = path.parent_path()) {
    syncFolder(path.parent_path());
  }
}

}  // namespace tlpacscfg::cli
