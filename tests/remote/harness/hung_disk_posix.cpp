#include "remote/harness/hung_disk.h"

#include <fcntl.h>
#include <linux/fuse.h>
#include <poll.h>
#include <sys/mount.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <stdexcept>
#include <vector>

namespace tlpacscfg::test {

HungDisk::HungDisk(std::string directory)
    : directory_(std::move(directory)), requests_(open("/dev/fuse", O_RDWR | O_CLOEXEC)) {
  std::filesystem::create_directory(directory_);
  const std::string options =
      "fd=" + std::to_string(requests_) + ",rootmode=40000,user_id=0,group_id=0";
  if (mount("hung", directory_.c_str(), "fuse", MS_NOSUID | MS_NODEV, options.c_str()) != 0) {
    const std::string reason = std::strerror(errno);
    close(requests_);
    throw std::runtime_error("A disk cannot be mounted: " + reason);
  }
  kernel_ = std::thread([this] { answerNothing(); });
}

HungDisk::~HungDisk() {
  if (!removed_) remove();
}

void HungDisk::remove() {
  removed_ = true;
  kernel_.join();
  umount2(directory_.c_str(), MNT_DETACH);
  // Ends the connection to the kernel, and with it every access that waits.
  close(requests_);
}

/// Takes the kernel's requests, which could be cancelled otherwise, and answers only the greeting.
void HungDisk::answerNothing() {
  std::vector<char> request(1 << 17);
  while (!removed_) {
    pollfd waited{requests_, POLLIN, 0};
    if (poll(&waited, 1, 10) <= 0) continue;
    if (read(requests_, request.data(), request.size()) < 0) continue;
    fuse_in_header header{};
    std::memcpy(&header, request.data(), sizeof(header));
    if (header.opcode != FUSE_INIT) continue;
    struct {
      fuse_out_header header;
      fuse_init_out init;
    } answer{};
    answer.header = {sizeof(answer), 0, header.unique};
    answer.init.major = FUSE_KERNEL_VERSION;
    answer.init.minor = 31;
    answer.init.max_write = 4096;
    if (write(requests_, &answer, sizeof(answer)) < 0) return;
  }
}

}  // namespace tlpacscfg::test
