#include "cli/base/progress.h"

#include <algorithm>
#include <iostream>
#include <utility>

namespace tlpacscfg::cli {
namespace {

using std::chrono::milliseconds;

constexpr milliseconds kQuietTime{1000};
constexpr milliseconds kDrawingTime{200};
constexpr std::size_t kBarWidth = 20;

bool isProgressAllowed = false;
/// Held while standard error is written to, and for `shownWidth`.
std::mutex terminalLock;
std::size_t shownWidth = 0;

void showLine(const std::string& line) {
  const std::size_t blanks = shownWidth - std::min(shownWidth, line.size());
  std::cerr << '\r' << line << std::string(blanks, ' ') << std::flush;
  shownWidth = line.size();
}

void eraseLine() {
  if (shownWidth == 0) return;
  showLine("");
  std::cerr << '\r' << std::flush;
}

}  // namespace

std::string progressLine(std::string_view what, std::size_t done, std::size_t steps,
                         milliseconds taken) {
  if (taken < kQuietTime) return {};
  std::string line(what);
  if (steps == 0) return line + ", " + std::to_string(taken / std::chrono::seconds(1)) + " s";
  done = std::min(done, steps);
  std::string bar(kBarWidth * done / steps, '#');
  bar.resize(kBarWidth, ' ');
  return line + " [" + bar + "] " + std::to_string(100 * done / steps) + " %";
}

void Progress::allow() { isProgressAllowed = true; }

std::unique_lock<std::mutex> Progress::hidden() {
  std::unique_lock lock(terminalLock);
  eraseLine();
  return lock;
}

Progress::Progress(std::string what, std::size_t steps) : what_(std::move(what)), steps_(steps) {
  if (isProgressAllowed) drawing_ = std::thread([this] { draw(); });
}

Progress::~Progress() {
  if (!drawing_.joinable()) return;
  {
    const auto lock = hidden();
    ended_ = true;
  }
  ending_.notify_one();
  drawing_.join();
}

void Progress::draw() {
  std::unique_lock lock(terminalLock);
  while (!ending_.wait_for(lock, kDrawingTime, [this] { return ended_; })) {
    const auto taken = std::chrono::steady_clock::now() - began_;
    const std::string line =
        progressLine(what_, done_, steps_, std::chrono::duration_cast<milliseconds>(taken));
    if (!line.empty()) showLine(line);
  }
}

}  // namespace tlpacscfg::cli
