#include "service/descriptor_limit.h"

#include <sys/resource.h>

#include <algorithm>
#include <stdexcept>
#include <string>

#include "service/journal.h"

namespace tlpacscfg::service {
namespace {

constexpr rlim_t kForTheService = 24;
/// Its connection, both ends of the sockets to a statement's process, and some to spare.
constexpr rlim_t kForEachWorker = 6;

}  // namespace

std::size_t reserveDescriptors(std::size_t waiting, std::size_t workers) {
  const rlim_t own = kForTheService + kForEachWorker * workers;
  rlimit limit{};
  getrlimit(RLIMIT_NOFILE, &limit);
  if (limit.rlim_cur < own + waiting) {
    const rlimit raised{std::min(own + waiting, limit.rlim_max), limit.rlim_max};
    if (setrlimit(RLIMIT_NOFILE, &raised) == 0) limit = raised;
  }
  if (limit.rlim_cur <= own) {
    throw std::runtime_error("the limit of open files, " + std::to_string(limit.rlim_cur) +
                             ", is too low for " + std::to_string(workers) + " workers");
  }
  const std::size_t places = std::min<std::size_t>(waiting, limit.rlim_cur - own);
  if (places < waiting) {
    writeJournal("limited",
                 {{"waiting", std::to_string(places)},
                  {"reason", "the limit of open files is " + std::to_string(limit.rlim_cur)}});
  }
  return places;
}

}  // namespace tlpacscfg::service
