#include "remote/harness/denied_call.h"

#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <unistd.h>

#include <cstddef>
#include <span>

namespace tlpacscfg::test {
namespace {

constexpr sock_filter load(std::size_t offset) {
  return BPF_STMT(BPF_LD | BPF_W | BPF_ABS, static_cast<__u32>(offset));
}

constexpr sock_filter skipUnless(unsigned value, __u8 skipped) {
  return BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, value, 0, skipped);
}

constexpr sock_filter kAllow = BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW);

sock_filter refuse(int error) {
  return BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | static_cast<__u32>(error));
}

void apply(std::span<sock_filter> lines) {
  const sock_fprog program{static_cast<unsigned short>(lines.size()), lines.data()};
  if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0 ||
      prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) != 0) {
    _exit(126);
  }
}

}  // namespace

void denyCall(unsigned number, int error) {
  sock_filter lines[] = {load(offsetof(seccomp_data, nr)), skipUnless(number, 1), refuse(error),
                         kAllow};
  apply(lines);
}

void denyCall(unsigned number, unsigned secondArgument, int error) {
  sock_filter lines[] = {load(offsetof(seccomp_data, nr)),
                         skipUnless(number, 5),
                         load(offsetof(seccomp_data, args[1])),
                         skipUnless(secondArgument, 3),
                         load(offsetof(seccomp_data, args[2])),
                         BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, 0, 1, 0),
                         refuse(error),
                         kAllow};
  apply(lines);
}

}  // namespace tlpacscfg::test
