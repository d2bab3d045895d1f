#include <stdexcept>

#include "benchmarks/bare/odbc.h"
#include "benchmarks/measurements.h"
#include "benchmarks/measuring.h"
#include "config/columns.h"
#include "support/text.h"

namespace tlpacscfg::bench {
namespace {

/// Init of a new object; creating and destroying the object is not timed.
Timed initOf(const Site& site, Path path, std::shared_ptr<clsConfig>& config) {
  return {[&config] { init(*config); },
          [&site, path, &config] {
            disconnect();
            config = configFor(site, path);
          }};
}

void fetchAll(const Site& site, Path path, const std::u16string& listing) {
  bare::Connection connection(site.connectString(path));
  const std::size_t configurations = connection.fetch(toUtf16(loadingStatement()));
  const std::size_t workstations = connection.fetch(listing);
  if (configurations != static_cast<std::size_t>(site.configurations) ||
      workstations != static_cast<std::size_t>(site.workstations)) {
    throw std::runtime_error("The bare loop read another number of rows.");
  }
}

}  // namespace

void measureLoading(const Site& site, Path path) {
  std::shared_ptr<clsConfig> config;
  const std::u16string listing = statementsAt(path, kListStatement).front();
  compare(path == Path::Direct ? "loading" : "loading-server", site.workstations, site.repetitions,
          initOf(site, path, config), {[&] { fetchAll(site, path, listing); }});
  disconnect();
}

void measureServiceLoading(const Site& site) {
  std::shared_ptr<clsConfig> config;
  const std::u16string listing = statementsAt(Path::Direct, kListStatement).front();
  compare("loading-service", site.workstations, site.repetitions,
          initOf(site, Path::Service, config), {[&] { fetchAll(site, Path::Direct, listing); }});
  disconnect();
}

}  // namespace tlpacscfg::bench
