#pragma once

#include <random>
#include <string>
#include <vector>

#include "remote/harness/service_process.h"

namespace tlpacscfg::test {

using Random = std::mt19937;

/// One attack on a service: opens its own connections and ends within seconds.
struct Attack {
  const char* name;
  void (*run)(int port, Random& random);
};

const std::vector<Attack>& attacks();

/// A number in [0, bound).
std::size_t below(Random& random, std::size_t bound);

}  // namespace tlpacscfg::test
