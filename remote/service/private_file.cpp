#include "service/private_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>

#include "service/descriptor.h"
#include "service/options.h"

namespace tlpacscfg::service {
namespace {

constexpr std::size_t kMaxBytes = 1 << 20;
constexpr mode_t kForOthers = S_IRWXO | S_IWGRP;

std::string octal(mode_t mode) {
  std::array<char, 8> text{};
  std::snprintf(text.data(), text.size(), "%03o", mode & 07777U);
  return text.data();
}

}  // namespace

std::string whyNotPrivate(const struct stat& status, uid_t user) {
  if (!S_ISREG(status.st_mode)) return "is not a file";
  if (status.st_uid != 0 && status.st_uid != user) {
    return "belongs to user " + std::to_string(status.st_uid) +
           ", who is neither root nor the user of the service";
  }
  if ((status.st_mode & kForOthers) != 0) {
    return "can be read or changed by others (mode " + octal(status.st_mode) +
           "): chmod 600, or 640 for a group that may read it";
  }
  return {};
}

std::string readPrivateFile(const std::string& kind, const std::string& file) {
  const auto refuse = [&](const std::string& complaint) {
    throw OptionError(kind + " '" + file + "' " + complaint);
  };
  // Opening a named pipe must not wait for its writer.
  const Descriptor opened(open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  if (opened.get() < 0) refuse("cannot be read");
  struct stat status {};
  if (fstat(opened.get(), &status) != 0) refuse("cannot be read");
  if (const std::string reason = whyNotPrivate(status, geteuid()); !reason.empty()) refuse(reason);
  std::string content;
  std::array<char, 4096> piece{};
  for (;;) {
    const ssize_t count = read(opened.get(), piece.data(), piece.size());
    if (count == 0) return content;
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) refuse("cannot be read");
    content.append(piece.data(), static_cast<std::size_t>(count));
    if (content.size() > kMaxBytes) refuse("is too large");
  }
}

}  // namespace tlpacscfg::service
