#include <stdexcept>

#include "benchmarks/bare/odbc.h"
#include "benchmarks/measurements.h"
#include "benchmarks/measuring.h"
#include "config/columns.h"

namespace tlpacscfg::bench {
namespace {

/// An Init of an object of its own; neither making nor dropping that is timed.
Timed initOf(const Site& site, Way way, std::shared_ptr<clsConfig>& config) {
  return {[&config] { init(*config); },
          [&site, way, &config] {
            disconnect();
            config = configFor(site, way);
          }};
}

void fetchAll(const Site& site, Way way, const std::wstring& listing) {
  bare::Connection connection(site.connectString(way));
  const std::size_t configurations = connection.fetch(loadingStatement());
  const std::size_t workstations = connection.fetch(listing);
  if (configurations != static_cast<std::size_t>(site.configurations) ||
      workstations != static_cast<std::size_t>(site.workstations)) {
    throw std::runtime_error("The bare loop read another number of rows.");
  }
}

}  // namespace

void measureLoading(const Site& site, Way way) {
  std::shared_ptr<clsConfig> config;
  const std::wstring listing = statementsAt(way, kListStatement).front();
  compare(way == Way::Direct ? "loading" : "loading-server", site.workstations, site.repetitions,
          initOf(site, way, config), {[&] { fetchAll(site, way, listing); }});
  disconnect();
}

void measureServiceLoading(const Site& site) {
  std::shared_ptr<clsConfig> config;
  compare("loading-service", site.workstations, site.repetitions,
          initOf(site, Way::Service, config), initOf(site, Way::Direct, config));
  disconnect();
}

}  // namespace tlpacscfg::bench
