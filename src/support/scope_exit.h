#pragma once

#include <utility>

namespace tlpacscfg {

/// Runs an action at the end of the scope, also when an exception leaves it.
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
