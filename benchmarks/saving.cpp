#include "benchmarks/bare/odbc.h"
#include "benchmarks/collector.h"
#include "benchmarks/measurements.h"
#include "benchmarks/measuring.h"
#include "odbc/dialect.h"

namespace tlpacscfg::bench {
namespace {

/// The batches that saving sends, each already in the statements that the driver takes.
std::vector<std::vector<std::wstring>> batchesOf(const clsConfig& config) {
  std::vector<std::vector<std::wstring>> batches;
  for (const std::wstring& text :
       textsExecutedBy([&] { config.m_colWorkstation->SaveAllWorkStationSettings(); })) {
    batches.push_back(statementsFor(Dialect::Sqlite, text));
  }
  return batches;
}

}  // namespace

void measureSaving(const Site& site, int repetitions) {
  const std::shared_ptr<clsConfig> config = initialised(site);
  const std::vector<std::vector<std::wstring>> batches = batchesOf(*config);
  bare::Connection connection(site.connectString());
  compare("saving-assignments", site, repetitions,
          {[&] { config->m_colWorkstation->SaveAllWorkStationSettings(); }}, {[&] {
            for (const auto& batch : batches) connection.executeTogether(batch);
          }});
  disconnect();
}

}  // namespace tlpacscfg::bench
