#pragma once

#include <utility>

namespace tlpacscfg {

/// Runs an action when the scope ends, however it ends.
template <class Action>
class ScopeExit {
 public:
  explicit ScopeExit(Action action) : action_(std::move(action)) {}
  ~ScopeExit() { action_(); }
  ScopeExit(const ScopeExit&) = delete;
  ScopeExit& operator=(const ScopeExit&) = delete;

 private:
  Action action_;
};

}  // namespace tlpacscfg
