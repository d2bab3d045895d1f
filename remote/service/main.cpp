#include <sys/eventfd.h>

#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "service/confinement.h"
#include "service/credentials.h"
#include "service/accept_loop.h"
#include "service/descriptor.h"
#include "service/journal.h"
#include "service/http_server.h"
#include "service/listening_socket.h"
#include "service/options.h"
#include "service/job_process.h"

namespace tlpacscfg::service {
namespace {

constexpr int kFailure = 1;
constexpr int kWrongUse = 2;

sigset_t handledSignals() {
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGTERM);
  sigaddset(&signals, SIGINT);
  sigaddset(&signals, SIGHUP);
  return signals;
}

/// Waits for signals. SIGHUP reads tokens, certificate and key again. SIGTERM or SIGINT gives the
/// stop signal; the process exits at once on a second one, and when a request is still running long
/// after its time.
class Signals {
 public:
  Signals(HttpServer& server, int stopSignal, std::function<Credentials()> readAgain)
      : server_(server),
        stopSignal_(stopSignal),
        readAgain_(std::move(readAgain)),
        waiter_([this] { wait(); }) {}
  ~Signals() {
    over_ = true;
    waiter_.join();
  }
  Signals(const Signals&) = delete;
  Signals& operator=(const Signals&) = delete;

 private:
  void reload() {
    try {
      server_.use(std::make_shared<const Credentials>(readAgain_()));
      writeJournal("reloaded");
    } catch (const std::exception& error) {
      // The old ones stay in use.
      writeJournal("reload-failed", {{"error", error.what()}});
    }
  }

  void wait() {
    const sigset_t signals = handledSignals();
    const timespec pause{0, 50'000'000};
    constexpr std::chrono::seconds kMaxTime = 4 * kEndingTime;
    bool ending = false;
    std::chrono::steady_clock::time_point latest{};
    while (!over_) {
      if (ending && std::chrono::steady_clock::now() > latest) {
        writeJournal("abandoned", {{"reason", "requests are still running"}});
        std::_Exit(kFailure);
      }
      const int signal = sigtimedwait(&signals, nullptr, &pause);
      if (signal == SIGHUP) {
        reload();
      } else if (signal > 0) {
        if (ending) std::_Exit(kFailure);
        ending = true;
        latest = std::chrono::steady_clock::now() + kMaxTime;
        writeJournal("stopping");
        eventfd_write(stopSignal_, 1);
      }
    }
  }

  HttpServer& server_;
  const int stopSignal_;
  const std::function<Credentials()> readAgain_;
  std::atomic<bool> over_ = false;
  std::thread waiter_;
};

/// The arguments are those of the start; other settings need a restart.
Credentials readCredentialsAgain(const std::vector<std::string>& arguments, bool plainHttp) {
  const ServiceOptions options = readOptions(arguments);
  if (options.plainHttp != plainHttp) throw OptionError("plain-http needs a restart");
  return Credentials(options);
}

std::string urlOf(const ServiceOptions& options, int port) {
  const bool v6 = options.address.find(':') != std::string::npos;
  return (options.plainHttp ? "http://" : "https://") +
         (v6 ? "[" + options.address + "]" : options.address) + ":" + std::to_string(port);
}

bool serve(const ServiceOptions& options, HttpServer& server, int stopSignal) {
  std::optional<Descriptor> listening = listenOn(options.address, options.port);
  if (!listening) {
    std::cerr << "tlcommd: cannot listen on " << options.address << " port " << options.port
              << '\n';
    return false;
  }
  const int port = portOf(*listening);
  AcceptLoop loop(*std::move(listening), options, server);
  writeJournal("listening", {{"url", urlOf(options, port)}});
  // 0: statements may open every file that the service's user may.
  writeJournal("confinement", {{"landlock", std::to_string(landlockVersion())}});
  loop.run(stopSignal);
  return true;
}

int run(const ServiceOptions& options, const std::vector<std::string>& arguments) {
  const Descriptor stopSignal(eventfd(0, EFD_CLOEXEC));
  HttpServer server(options, stopSignal.get());
  limitMemory(options.memoryMegabytes);
  hideMemory();
  const Signals signals(server, stopSignal.get(),
                        [&] { return readCredentialsAgain(arguments, options.plainHttp); });
  if (!serve(options, server, stopSignal.get())) return kFailure;
  writeJournal("stopped");
  return 0;
}

}  // namespace
}  // namespace tlpacscfg::service

int main(int count, char** arguments) {
  using namespace tlpacscfg::service;
  // All threads inherit the mask; only the one that waits for the signals receives them.
  const sigset_t signals = handledSignals();
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
  std::signal(SIGPIPE, SIG_IGN);
  // May have been ignored by the parent process; waitpid needs it.
  std::signal(SIGCHLD, SIG_DFL);
  try {
    const std::vector<std::string> words(arguments + 1, arguments + count);
    if (const std::optional<int> code = serveJob(words)) return *code;
    const ServiceOptions options = readOptions(words);
    if (!options.answer.empty()) {
      std::cout << options.answer;
      return 0;
    }
    return run(options, words);
  } catch (const OptionError& error) {
    std::cerr << "tlcommd: " << error.what() << '\n';
    return kWrongUse;
  } catch (const std::exception& error) {
    std::cerr << "tlcommd: " << error.what() << '\n';
    return kFailure;
  }
}
