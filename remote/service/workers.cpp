#include "service/workers.h"

#include <sys/eventfd.h>

#include <cerrno>
#include <exception>
#include <system_error>
#include <utility>

namespace tlpacscfg::service {
namespace {

/// A failure ends its own connection only.
TokenCheck perform(const Workers::Serve& serve, Connection& connection) noexcept {
  try {
    return serve(connection);
  } catch (...) {
    return TokenCheck::None;
  }
}

}  // namespace

Workers::Workers(std::size_t count, Serve serve)
    : serve_(std::move(serve)), signal_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
  if (signal_.get() < 0) throw std::system_error(errno, std::generic_category());
  given_.reserve(count);
  served_.reserve(count);
  try {
    for (std::size_t i = 0; i < count; ++i) threads_.emplace_back([this] { run(); });
  } catch (const std::exception&) {
    if (threads_.empty()) throw;
  }
}

Workers::~Workers() {
  {
    const std::scoped_lock lock(mutex_);
    ending_ = true;
  }
  changed_.notify_all();
  for (std::thread& thread : threads_) thread.join();
}

void Workers::give(Connection connection) {
  const std::scoped_lock lock(mutex_);
  given_.push_back(std::move(connection));
  changed_.notify_one();
}

std::optional<Workers::Served> Workers::takeServed() {
  const std::scoped_lock lock(mutex_);
  if (served_.empty()) {
    eventfd_t ignored = 0;
    eventfd_read(signal_.get(), &ignored);
    return std::nullopt;
  }
  Served served = std::move(served_.back());
  served_.pop_back();
  return served;
}

void Workers::run() {
  std::unique_lock lock(mutex_);
  for (;;) {
    changed_.wait(lock, [this] { return ending_ || !given_.empty(); });
    if (given_.empty()) return;
    Connection connection = std::move(given_.back());
    given_.pop_back();
    lock.unlock();
    const TokenCheck token = perform(serve_, connection);
    lock.lock();
    served_.push_back({std::move(connection.peer.network), token});
    eventfd_write(signal_.get(), 1);
  }
}

}  // namespace tlpacscfg::service
