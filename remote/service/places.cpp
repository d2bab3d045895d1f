#include "service/places.h"

#include <sys/wait.h>

namespace tlpacscfg::service {

Places::Outcome Places::take(std::chrono::steady_clock::time_point deadline,
                             const std::function<bool()>& stopped) {
  constexpr std::chrono::milliseconds kPause{50};
  std::unique_lock lock(mutex_);
  for (;;) {
    collectEnded();
    if (free_ > 0) {
      --free_;
      return Outcome::Taken;
    }
    if (killed_.size() == count_) return Outcome::Lost;
    if (stopped()) return Outcome::Stopped;
    if (std::chrono::steady_clock::now() >= deadline) return Outcome::Late;
    changed_.wait_for(lock, kPause);
  }
}

void Places::giveBack() {
  {
    const std::scoped_lock lock(mutex_);
    ++free_;
  }
  changed_.notify_one();
}

void Places::giveBackAfter(pid_t killed) {
  const std::scoped_lock lock(mutex_);
  killed_.push_back(killed);
}

void Places::collectEnded() {
  free_ += std::erase_if(killed_, [](pid_t one) { return waitpid(one, nullptr, WNOHANG) != 0; });
}

}  // namespace tlpacscfg::service
