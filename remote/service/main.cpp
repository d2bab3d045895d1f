#include <sys/eventfd.h>
#include <sys/resource.h>

#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <ctime>
#include <iostream>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "service/descriptor.h"
#include "service/journal.h"
#include "service/listener.h"
#include "service/options.h"
#include "service/statement_process.h"

namespace tlpacscfg::service {
namespace {

constexpr int kFailure = 1;
constexpr int kWrongUse = 2;

sigset_t endingSignals() {
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGTERM);
  sigaddset(&signals, SIGINT);
  return signals;
}

void limitMemory([[maybe_unused]] std::size_t megabytes) {
// A sanitizer needs more address space than any limit leaves it.
#ifndef TL_SANITIZED
  if (megabytes == 0) return;
  const rlimit limit{megabytes << 20, megabytes << 20};
  setrlimit(RLIMIT_AS, &limit);
#endif
}

/// Waits for SIGTERM or SIGINT and stops the listener. The process exits at once on a second
/// signal, and when a request is still running long after its time, such as a listing of a lost
/// disk.
class Ending {
 public:
  Ending(Listener& listener, int stopSignal)
      : listener_(listener), stopSignal_(stopSignal), waiter_([this] { wait(); }) {}
  ~Ending() {
    over_ = true;
    waiter_.join();
  }
  Ending(const Ending&) = delete;
  Ending& operator=(const Ending&) = delete;

 private:
  void wait() {
    const sigset_t signals = endingSignals();
    const timespec pause{0, 50'000'000};
    constexpr std::chrono::seconds kMaxTime = 4 * kEndingTime;
    bool ending = false;
    std::chrono::steady_clock::time_point latest{};
    while (!over_) {
      if (ending && std::chrono::steady_clock::now() > latest) {
        writeJournal("abandoned", {{"reason", "requests are still running"}});
        std::_Exit(kFailure);
      }
      if (sigtimedwait(&signals, nullptr, &pause) > 0) {
        if (ending) std::_Exit(kFailure);
        ending = true;
        latest = std::chrono::steady_clock::now() + kMaxTime;
        writeJournal("stopping");
        eventfd_write(stopSignal_, 1);
      }
      // Repeated, because the listener may be about to listen again.
      if (ending) listener_.stop();
    }
  }

  Listener& listener_;
  const int stopSignal_;
  std::atomic<bool> over_ = false;
  std::thread waiter_;
};

int run(const ServiceOptions& options) {
  const Descriptor stopSignal(eventfd(0, EFD_CLOEXEC));
  Listener listener(options, stopSignal.get());
  limitMemory(options.memoryMegabytes);
  const Ending ending(listener, stopSignal.get());
  if (listener.serve()) {
    writeJournal("stopped");
    return 0;
  }
  std::cerr << "tlcommd: cannot listen on " << options.address << " port " << options.port << '\n';
  return kFailure;
}

}  // namespace
}  // namespace tlpacscfg::service

int main(int count, char** arguments) {
  using namespace tlpacscfg::service;
  // All threads inherit the mask; only the one that waits for the signals receives them.
  const sigset_t signals = endingSignals();
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
  std::signal(SIGPIPE, SIG_IGN);
  // May have been ignored by the parent process; waitpid needs it.
  std::signal(SIGCHLD, SIG_DFL);
  try {
    const std::vector<std::string> words(arguments + 1, arguments + count);
    if (const std::optional<int> code = serveStatement(words)) return *code;
    const ServiceOptions options = readOptions(words);
    if (options.help) {
      std::cout << helpText();
      return 0;
    }
    return run(options);
  } catch (const OptionError& error) {
    std::cerr << "tlcommd: " << error.what() << '\n';
    return kWrongUse;
  } catch (const std::exception& error) {
    std::cerr << "tlcommd: " << error.what() << '\n';
    return kFailure;
  }
}
