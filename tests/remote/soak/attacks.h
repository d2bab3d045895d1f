#pragma once

#include <random>
#include <string>
#include <vector>

#include "remote/harness/service_process.h"

namespace tlpacscfg::test {

using Random = std::mt19937;

/// One way to treat a service badly: opens its own connections and is over within seconds.
struct Attack {
  const char* name;
  void (*run)(int port, Random& random);
};

const std::vector<Attack>& attacks();

/// A number from 0 up to but not including the bound.
std::size_t below(Random& random, std::size_t bound);

}  // namespace tlpacscfg::test
