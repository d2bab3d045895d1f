#include "service/statement_process.h"

#include <poll.h>
#include <spawn.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <string_view>
#include <system_error>

#include "service/descriptor.h"
#include "service/json_text.h"
#include "service/refusal.h"
#include "service/request.h"

namespace tlpacscfg::service {
namespace {

using Clock = std::chrono::steady_clock;

constexpr const char* kFirstArgument = "--run-statement";
/// Added to the time limit: the driver may end the statement itself first.
constexpr std::chrono::seconds kGrace{2};
constexpr std::size_t kStatusDigits = 3;
constexpr std::size_t kMaxReasonBytes = 1 << 16;

Refusal driverFailed() { return {http_status::kFailed, "The database driver broke down."}; }

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

/// A running process of this program; it does not outlive this object.
class Process {
 public:
  Process(std::vector<std::string> arguments, int input) {
    std::vector<char*> words;
    words.reserve(arguments.size() + 1);
    for (std::string& argument : arguments) words.push_back(argument.data());
    words.push_back(nullptr);
    FileActions actions;
    posix_spawn_file_actions_adddup2(actions.get(), input, STDIN_FILENO);
    // Keeps the output of drivers out of the journal.
    posix_spawn_file_actions_adddup2(actions.get(), STDERR_FILENO, STDOUT_FILENO);
    // Otherwise this process would keep connections of other clients open.
    posix_spawn_file_actions_addclosefrom_np(actions.get(), STDERR_FILENO + 1);
    const int error =
        posix_spawn(&id_, "/proc/self/exe", actions.get(), nullptr, words.data(), environ);
    if (error != 0) throw std::system_error(error, std::generic_category());
  }
  ~Process() {
    if (id_ == 0) return;
    kill(id_, SIGKILL);
    awaitEnd();
  }
  Process(const Process&) = delete;
  Process& operator=(const Process&) = delete;

  /// Waits for the end of the process. True when its exit code was 0.
  bool awaitEnd() {
    int status = 0;
    while (waitpid(id_, &status, 0) < 0 && errno == EINTR) {
    }
    id_ = 0;
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
  }

 private:
  pid_t id_ = 0;
};

/// Exchanges texts with a process until a deadline, which is earlier when the service is to end.
class Exchange {
 public:
  Exchange(int socket, int stopSignal, std::chrono::seconds time)
      : socket_(socket), stopSignal_(stopSignal), deadline_(Clock::now() + time) {}

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

 private:
  void awaitUnlessBroken(short events) {
    if (errno != EAGAIN && errno != EWOULDBLOCK && errno != EINTR) throw driverFailed();
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline_ - Clock::now());
    if (left.count() <= 0) {
      throw Refusal(http_status::kFailed,
                    stopping_ ? "The service is ending."
                              : "The statement took longer than the service allows.");
    }
    pollfd waited[] = {{socket_, events, 0}, {stopSignal_, POLLIN, 0}};
    poll(waited, stopping_ ? 1 : 2, static_cast<int>(left.count()));
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

std::string requestOf(const Statement& statement) {
  return std::string(R"({"query":)") + (statement.kind == StatementKind::Query ? "true" : "false") +
         R"(,"connect":)" + quoted(statement.connectString) + R"(,"sql":)" + quoted(statement.sql) +
         "}";
}

Statement statementIn(const Request& request) {
  return {request.truth("query") ? StatementKind::Query : StatementKind::Execute,
          request.utf8("connect"), request.utf8("sql")};
}

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
std::string resultOf(const StatementLimits& limits) {
  try {
    const Statement statement = statementIn(Request(readToEnd(STDIN_FILENO)));
    return std::to_string(http_status::kOk) + run(statement, limits);
  } catch (...) {
    const Refusal refusal = refusalOfCurrentException();
    return std::to_string(refusal.status()) + refusal.what();
  }
}

}  // namespace

std::string runInProcess(const Statement& statement, const ServiceOptions& options,
                         int stopSignal) {
  SocketPair sockets;
  Process process(
      {"tlcommd", kFirstArgument, std::to_string(getpid()),
       std::to_string(options.statementSeconds.count()), std::to_string(options.responseBytes)},
      sockets.theirs.get());
  sockets.theirs.close();
  Exchange exchange(sockets.ours.get(), stopSignal, options.statementSeconds + kGrace);
  exchange.send(requestOf(statement));
  std::string result =
      exchange.receive(std::max(options.responseBytes, kMaxReasonBytes) + kStatusDigits);
  // The socket has been closed at the other end: the process has ended or is about to.
  if (!process.awaitEnd() || result.size() < kStatusDigits) throw driverFailed();
  const int status = std::stoi(result.substr(0, kStatusDigits));
  result.erase(0, kStatusDigits);
  if (status != http_status::kOk) throw Refusal(status, result);
  return result;
}

std::optional<int> serveStatement(const std::vector<std::string>& arguments) {
  if (arguments.size() != 4 || arguments[0] != kFirstArgument) return std::nullopt;
  // The statement must not outlive a service that is killed.
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  if (getppid() != std::stoi(arguments[1])) return 1;
  const StatementLimits limits{.time = std::chrono::seconds(std::stoi(arguments[2])),
                               .answerBytes = std::stoul(arguments[3])};
  writeAll(STDIN_FILENO, resultOf(limits));
  return 0;
}

}  // namespace tlpacscfg::service
