#include "service/metrics.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <vector>

namespace tlpacscfg::service {
namespace {

using nlohmann::json;

/// The smallest time that so many percent of the sorted times do not exceed.
template <class Time>
Time percentile(const std::vector<Time>& times, std::size_t percent) {
  return times[(times.size() * percent + 99) / 100 - 1];
}

}  // namespace

void Metrics::answered(const std::string& operation, int status, Clock::duration time) {
  const std::scoped_lock lock(mutex_);
  ++requests_[operation][std::to_string(status)];
  Window& window = windows_[operation];
  window.times[window.count++ % window.times.size()] =
      std::chrono::duration_cast<std::chrono::milliseconds>(time).count();
}

void Metrics::refused(const std::string& reason) {
  const std::scoped_lock lock(mutex_);
  ++refusals_[reason];
}

void Metrics::setLoad(const Load& load) {
  const std::scoped_lock lock(mutex_);
  load_ = load;
}

std::string Metrics::text() const {
  const std::scoped_lock lock(mutex_);
  const auto uptime = std::chrono::duration_cast<std::chrono::seconds>(Clock::now() - start_);
  json times = json::object();
  for (const auto& [operation, window] : windows_) {
    std::vector<Milliseconds> sorted(
        window.times.begin(), window.times.begin() + static_cast<std::ptrdiff_t>(std::min(
                                                         window.count, window.times.size())));
    std::sort(sorted.begin(), sorted.end());
    times[operation] = {{"p50", percentile(sorted, 50)},
                        {"p95", percentile(sorted, 95)},
                        {"p99", percentile(sorted, 99)},
                        {"max", sorted.back()}};
  }
  return json{{"version", TL_VERSION},
              {"uptimeSeconds", uptime.count()},
              {"workers", {{"all", load_.workers}, {"busy", load_.working}}},
              {"places", {{"all", load_.places}, {"taken", load_.waiting}}},
              {"requests", requests_},
              {"milliseconds", times},
              {"refusals", refusals_}}
      .dump();
}

}  // namespace tlpacscfg::service
