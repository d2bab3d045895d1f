#pragma once

#include <condition_variable>
#include <cstddef>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "service/connection.h"
#include "service/descriptor.h"

namespace tlpacscfg::service {

/// Threads that serve connections, one each at a time.
class Workers {
 public:
  using Serve = std::function<TokenCheck(Connection&)>;

  struct Served {
    std::string network;
    TokenCheck token = TokenCheck::None;
  };

  /// Fewer threads than wanted are enough, but there must be one. Throws std::system_error.
  Workers(std::size_t count, Serve serve);

  /// Returns when all connections have been served.
  ~Workers();
  Workers(const Workers&) = delete;
  Workers& operator=(const Workers&) = delete;

  std::size_t count() const { return threads_.size(); }

  /// Only while fewer than count() connections have been given and not been taken.
  void give(Connection connection);

  /// One connection that has been served.
  std::optional<Served> takeServed();

  /// Readable when takeServed() has one.
  int signal() const { return signal_.get(); }

 private:
  void run();

  const Serve serve_;
  const Descriptor signal_;
  std::mutex mutex_;
  std::condition_variable changed_;
  // Their memory is reserved, so that no connection is lost without any.
  std::vector<Connection> given_;
  std::vector<Served> served_;
  bool ending_ = false;
  std::vector<std::thread> threads_;
};

}  // namespace tlpacscfg::service
