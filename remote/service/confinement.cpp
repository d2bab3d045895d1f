#include "service/confinement.h"

#include <fcntl.h>
#include <linux/capability.h>
#include <linux/landlock.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <system_error>

#include "service/descriptor.h"

namespace tlpacscfg::service {
namespace {

void require(bool done, const char* what) {
  if (!done) throw std::system_error(errno, std::generic_category(), what);
}

/// A process may already have a lower limit; it then keeps that one.
void limit(__rlimit_resource resource, rlim_t most, const char* what) {
  rlimit limits{};
  require(getrlimit(resource, &limits) == 0, what);
  limits.rlim_max = std::min(limits.rlim_max, most);
  limits.rlim_cur = limits.rlim_max;
  require(setrlimit(resource, &limits) == 0, what);
}

/// What RLIMIT_DATA counts.
std::size_t writableBytes() {
  std::ifstream stream("/proc/self/statm");
  std::size_t all = 0, resident = 0, shared = 0, text = 0, libraries = 0, data = 0;
  stream >> all >> resident >> shared >> text >> libraries >> data;
  if (!stream) throw std::runtime_error("/proc/self/statm cannot be read");
  return data * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

// The parts of Landlock's interface that the headers of older systems lack.
struct Ruleset {
  std::uint64_t files;
  std::uint64_t network;
  std::uint64_t scope;
};
constexpr std::uint64_t kReadFile = LANDLOCK_ACCESS_FS_READ_FILE;
constexpr std::uint64_t kReadDirectory = LANDLOCK_ACCESS_FS_READ_DIR;
constexpr std::uint64_t kExecuteFile = LANDLOCK_ACCESS_FS_EXECUTE;
constexpr std::uint64_t kTruncate = 1 << 14;
/// Of these rights only some are there in older versions.
constexpr std::uint64_t kChange = LANDLOCK_ACCESS_FS_WRITE_FILE | LANDLOCK_ACCESS_FS_MAKE_REG |
                                  LANDLOCK_ACCESS_FS_REMOVE_FILE | kTruncate;
constexpr std::uint64_t kForFiles =
    kReadFile | kExecuteFile | LANDLOCK_ACCESS_FS_WRITE_FILE | kTruncate;
constexpr std::uint64_t kBindAndConnect = 3;
constexpr std::uint64_t kAbstractSocketsAndSignals = 3;

/// All rights that a version knows are denied unless a rule grants them.
Ruleset rulesetOf(int version) {
  const int fileRights = version >= 5 ? 16 : version >= 3 ? 15 : version == 2 ? 14 : 13;
  return {.files = (std::uint64_t{1} << fileRights) - 1,
          .network = version >= 4 ? kBindAndConnect : 0,
          .scope = version >= 6 ? kAbstractSocketsAndSignals : 0};
}

std::size_t sizeOfRuleset(int version) {
  return version >= 6 ? sizeof(Ruleset) : (version >= 4 ? 2 : 1) * sizeof(std::uint64_t);
}

class Landlock {
 public:
  explicit Landlock(int version)
      : attributes_(rulesetOf(version)),
        ruleset_(static_cast<int>(
            syscall(SYS_landlock_create_ruleset, &attributes_, sizeOfRuleset(version), 0))) {
    require(ruleset_.get() >= 0, "Landlock");
  }

  /// Grants the rights below a directory, or to a file. Does nothing where there is none.
  void allow(const std::string& path, std::uint64_t rights) {
    const Descriptor place(open(path.c_str(), O_PATH | O_CLOEXEC));
    if (place.get() < 0) return;
    struct stat status {};
    require(fstat(place.get(), &status) == 0, "Landlock");
    if (!S_ISDIR(status.st_mode)) rights &= kForFiles;
    const landlock_path_beneath_attr rule{rights & attributes_.files, place.get()};
    require(
        syscall(SYS_landlock_add_rule, ruleset_.get(), LANDLOCK_RULE_PATH_BENEATH, &rule, 0) == 0,
        "Landlock");
  }

  void enforce() {
    require(syscall(SYS_landlock_restrict_self, ruleset_.get(), 0) == 0, "Landlock");
  }

 private:
  Ruleset attributes_;
  Descriptor ruleset_;
};

#ifdef TL_SANITIZED
/// A sanitizer reads the program and what the kernel knows of it, and writes what it has found.
void allowSanitizers(Landlock& landlock) {
  landlock.allow("/proc", kReadFile | kReadDirectory);
  landlock.allow(std::filesystem::read_symlink("/proc/self/exe").string(),
                 kReadFile | kExecuteFile);
  for (const char* name : {"ASAN_OPTIONS", "UBSAN_OPTIONS", "LSAN_OPTIONS"}) {
    const std::string options = std::getenv(name) ? std::getenv(name) : "";
    constexpr std::string_view kLogPath = "log_path=";
    const std::size_t found = options.find(kLogPath);
    if (found == options.npos) continue;
    const std::string path = options.substr(found + kLogPath.size());
    landlock.allow(std::filesystem::path(path.substr(0, path.find(':'))).parent_path().string(),
                   kReadFile | kReadDirectory | kChange);
  }
}
#endif

}  // namespace

void limitMemory(std::size_t megabytes) {
  limit(RLIMIT_CORE, 0, "RLIMIT_CORE");
  limit(RLIMIT_DATA, writableBytes() + (megabytes << 20), "RLIMIT_DATA");
}

void hideMemory() { require(prctl(PR_SET_DUMPABLE, 0) == 0, "PR_SET_DUMPABLE"); }

void dropRights() {
  // Its file belongs to root once the memory is hidden.
  std::ofstream score("/proc/self/oom_score_adj");
  require(bool(score << 1000 << std::flush), "oom_score_adj");
  require(prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0, "PR_SET_NO_NEW_PRIVS");
  __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
  __user_cap_data_struct none[_LINUX_CAPABILITY_U32S_3] = {};
  require(syscall(SYS_capset, &header, none) == 0, "capset");
  hideMemory();
}

int landlockVersion() {
  const long version =
      syscall(SYS_landlock_create_ruleset, nullptr, 0, LANDLOCK_CREATE_RULESET_VERSION);
  return version < 0 ? 0 : static_cast<int>(version);
}

void confine(const std::string& directory, Access access) {
  const int version = landlockVersion();
  if (version == 0) return;
  Landlock landlock(version);
  for (const char* path :
       {"/usr", "/lib", "/lib64", "/opt", "/etc/ld.so.cache", "/etc/localtime"}) {
    landlock.allow(path, kReadFile | kReadDirectory | kExecuteFile);
  }
  for (const char* path : {"/dev/null", "/dev/zero", "/dev/random", "/dev/urandom"}) {
    landlock.allow(path, kReadFile | kChange);
  }
  if (!directory.empty()) {
    landlock.allow(directory,
                   access == Access::List ? kReadDirectory : kReadFile | kReadDirectory | kChange);
  }
#ifdef TL_SANITIZED
  allowSanitizers(landlock);
#endif
  landlock.enforce();
}

}  // namespace tlpacscfg::service
