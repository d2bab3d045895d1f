#include "service/job_process.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <string_view>
#include <system_error>

#include "service/confinement.h"
#include "service/descriptor.h"
#include "service/job.h"
#include "service/refusal.h"
#include "service/request.h"

namespace tlpacscfg::service {
namespace {

using Clock = std::chrono::steady_clock;

constexpr const char* kFirstArgument = "--job";
/// Added to the time limit: the driver may end the statement itself first.
constexpr std::chrono::seconds kGrace{2};
/// For a process that is killed.
constexpr std::chrono::seconds kDyingTime{1};
constexpr std::size_t kStatusDigits = 3;
constexpr std::size_t kMaxReasonBytes = 1 << 16;

Refusal driverFailed() { return {http_status::kFailed, "The database driver broke down."}; }

Refusal tooLong(bool stopping) {
  return {http_status::kFailed, stopping ? "The service is ending."
                                         : "The statement took longer than the service allows."};
}

Refusal busy(const char* reason) { return {http_status::kBusy, reason}; }

struct SocketPair {
  SocketPair() : ends(make()), ours(ends[0]), theirs(ends[1]) {}

  static std::array<int, 2> make() {
    std::array<int, 2> made{};
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, made.data()) != 0) {
      throw std::system_error(errno, std::generic_category());
    }
    return made;
  }

  std::array<int, 2> ends;
  Descriptor ours, theirs;
};

class FileActions {
 public:
  FileActions() { posix_spawn_file_actions_init(&actions_); }
  ~FileActions() { posix_spawn_file_actions_destroy(&actions_); }
  FileActions(const FileActions&) = delete;
  FileActions& operator=(const FileActions&) = delete;

  posix_spawn_file_actions_t* get() { return &actions_; }

 private:
  posix_spawn_file_actions_t actions_{};
};

/// A process of this program, and its place among all. It is killed with this object, which does
/// not wait long: one that does not end keeps the place.
class Process {
 public:
  /// For a place that is taken.
  explicit Process(Places& places) : places_(places) {}
  ~Process() {
    if (id_ == 0 || end()) {
      places_.giveBack();
    } else {
      places_.giveBackAfter(id_);
    }
  }
  Process(const Process&) = delete;
  Process& operator=(const Process&) = delete;

  void start(std::vector<std::string> arguments, int input) {
    std::vector<char*> words;
    words.reserve(arguments.size() + 1);
    for (std::string& argument : arguments) words.push_back(argument.data());
    words.push_back(nullptr);
    FileActions actions;
    posix_spawn_file_actions_adddup2(actions.get(), input, STDIN_FILENO);
    // Keeps the output of drivers out of the journal.
    for (const int output : {STDOUT_FILENO, STDERR_FILENO}) {
      posix_spawn_file_actions_addopen(actions.get(), output, "/dev/null", O_WRONLY, 0);
    }
    // Otherwise this process would keep connections of other clients open.
    posix_spawn_file_actions_addclosefrom_np(actions.get(), STDERR_FILENO + 1);
    const int error =
        posix_spawn(&id_, "/proc/self/exe", actions.get(), nullptr, words.data(), environ);
    if (error != 0) throw std::system_error(error, std::generic_category());
    end_.emplace(static_cast<int>(syscall(SYS_pidfd_open, id_, 0)));
  }

  /// True when it ends within the time with the exit code 0.
  bool succeeds(std::chrono::milliseconds time) const {
    siginfo_t info{};
    return hasEnded(time) &&
           waitid(P_PID, static_cast<id_t>(id_), &info, WEXITED | WNOHANG | WNOWAIT) == 0 &&
           info.si_code == CLD_EXITED && info.si_status == 0;
  }

 private:
  /// Kills it; false when it does not end soon.
  bool end() const {
    kill(id_, SIGKILL);
    return hasEnded(kDyingTime) && waitpid(id_, nullptr, WNOHANG) == id_;
  }

  bool hasEnded(std::chrono::milliseconds time) const {
    pollfd end{end_->get(), POLLIN, 0};
    return poll(&end, 1, static_cast<int>(std::max<std::int64_t>(0, time.count()))) > 0 &&
           (end.revents & POLLIN) != 0;
  }

  Places& places_;
  pid_t id_ = 0;                   ///< 0 before it has started.
  std::optional<Descriptor> end_;  ///< Readable when the process has ended.
};

/// Exchanges texts with a process until a deadline, which is earlier when the service is to end.
class Exchange {
 public:
  Exchange(int socket, int stopSignal, Clock::time_point deadline)
      : socket_(socket), stopSignal_(stopSignal), deadline_(deadline) {}

  void send(std::string_view text) {
    while (!text.empty()) {
      const ssize_t sent = ::send(socket_, text.data(), text.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
      if (sent > 0) {
        text.remove_prefix(static_cast<std::size_t>(sent));
      } else {
        awaitUnlessBroken(POLLOUT);
      }
    }
    shutdown(socket_, SHUT_WR);
  }

  std::string receive(std::size_t maxBytes) {
    std::string text;
    std::array<char, 65536> piece{};
    for (;;) {
      const ssize_t count = recv(socket_, piece.data(), piece.size(), MSG_DONTWAIT);
      if (count == 0) return text;
      if (count < 0) {
        awaitUnlessBroken(POLLIN);
        continue;
      }
      text.append(piece.data(), static_cast<std::size_t>(count));
      if (text.size() > maxBytes) throw tooLarge();
    }
  }

  std::chrono::milliseconds timeLeft() const {
    return std::chrono::ceil<std::chrono::milliseconds>(deadline_ - Clock::now());
  }

 private:
  void awaitUnlessBroken(short events) {
    if (errno != EAGAIN && errno != EWOULDBLOCK && errno != EINTR) throw driverFailed();
    if (timeLeft().count() <= 0) throw tooLong(stopping_);
    pollfd waited[] = {{socket_, events, 0}, {stopSignal_, POLLIN, 0}};
    poll(waited, stopping_ ? 1 : 2, static_cast<int>(timeLeft().count()));
    if (!stopping_ && waited[1].revents != 0) {
      stopping_ = true;
      deadline_ = std::min(deadline_, Clock::now() + kEndingTime);
    }
  }

  int socket_;
  int stopSignal_;
  Clock::time_point deadline_;
  bool stopping_ = false;
};

std::string readToEnd(int socket) {
  std::string text;
  std::array<char, 65536> piece{};
  for (;;) {
    const ssize_t count = recv(socket, piece.data(), piece.size(), 0);
    if (count == 0) return text;
    if (count > 0) {
      text.append(piece.data(), static_cast<std::size_t>(count));
    } else if (errno != EINTR) {
      throw std::system_error(errno, std::generic_category());
    }
  }
}

void writeAll(int socket, std::string_view text) {
  while (!text.empty()) {
    const ssize_t count = ::send(socket, text.data(), text.size(), MSG_NOSIGNAL);
    if (count < 0 && errno != EINTR) throw std::system_error(errno, std::generic_category());
    if (count > 0) text.remove_prefix(static_cast<std::size_t>(count));
  }
}

/// The HTTP status in three digits, then the answer or the reason.
std::string resultOf(const JobLimits& limits, std::size_t megabytes) {
  try {
    limitMemory(megabytes);
    dropRights();
    return std::to_string(http_status::kOk) + perform(Request(readToEnd(STDIN_FILENO)), limits);
  } catch (...) {
    const Refusal refusal = refusalOfCurrentException();
    return std::to_string(refusal.status()) + refusal.what();
  }
}

bool isReadable(int descriptor) {
  pollfd waited{descriptor, POLLIN, 0};
  return poll(&waited, 1, 0) > 0;
}

}  // namespace

std::string JobProcesses::run(const std::string& job) {
  // The wait for a place counts.
  const auto deadline = Clock::now() + options_.statementSeconds;
  switch (places_.take(deadline, [this] { return isReadable(stopSignal_); })) {
    case Places::Outcome::Taken:
      break;
    case Places::Outcome::Late:
      throw busy("The service is running as many statements as its memory allows.");
    case Places::Outcome::Stopped:
      throw tooLong(true);
    case Places::Outcome::Lost:
      throw busy("The service waits for statements that cannot be ended.");
  }
  Process process(places_);
  SocketPair sockets;
  const auto seconds = std::chrono::ceil<std::chrono::seconds>(deadline - Clock::now());
  process.start({"tlcommd", kFirstArgument, std::to_string(getpid()),
                 std::to_string(std::max<std::int64_t>(1, seconds.count())),
                 std::to_string(options_.responseBytes), std::to_string(options_.memoryMegabytes)},
                sockets.theirs.get());
  sockets.theirs.close();
  Exchange exchange(sockets.ours.get(), stopSignal_, deadline + kGrace);
  exchange.send(job);
  std::string result =
      exchange.receive(std::max(options_.responseBytes, kMaxReasonBytes) + kStatusDigits);
  // The socket has been closed at the other end: the process has ended or is about to.
  if (!process.succeeds(exchange.timeLeft()) || result.size() < kStatusDigits) throw driverFailed();
  const int status = std::stoi(result.substr(0, kStatusDigits));
  result.erase(0, kStatusDigits);
  if (status != http_status::kOk) throw Refusal(status, result);
  return result;
}

std::optional<int> serveJob(const std::vector<std::string>& arguments) {
  if (arguments.size() != 5 || arguments[0] != kFirstArgument) return std::nullopt;
  // The job must not outlive a service that is killed.
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  if (getppid() != std::stoi(arguments[1])) return 1;
  const JobLimits limits{.time = std::chrono::seconds(std::stoi(arguments[2])),
                         .answerBytes = std::stoul(arguments[3])};
  writeAll(STDIN_FILENO, resultOf(limits, std::stoul(arguments[4])));
  return 0;
}

}  // namespace tlpacscfg::service
