#include <windows.h>

#include <vector>

#include "benchmarks/measurements.h"
#include "benchmarks/measuring.h"
#include "config/columns.h"
#include "support/text.h"

namespace tlpacscfg::bench {
namespace {

/// The bytes in use in all heaps of the process, including the overhead of each block.
std::size_t heapBytes() {
  std::vector<HANDLE> heaps(64);
  heaps.resize(GetProcessHeaps(static_cast<DWORD>(heaps.size()), heaps.data()));
  std::size_t bytes = 0;
  for (const HANDLE heap : heaps) {
    PROCESS_HEAP_ENTRY entry{};
    while (HeapWalk(heap, &entry)) {
      if ((entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0) bytes += entry.cbData + entry.cbOverhead;
    }
  }
  return bytes;
}

std::size_t textBytes(const clsConfig& config) {
  std::size_t characters = 0;
  for (const auto& record : config.m_colPACSConfig->ColPACSConfigs->items()) {
    for (const Column& column : columns()) {
      const FieldValue value = valueOf(*record, column.field);
      characters += std::visit(
          []<class Value>(const Value& held) {
            if constexpr (std::is_same_v<Value, std::wstring>)
              return held.size();
            else
              return decimal(held).size();
          },
          value);
    }
  }
  for (const auto& workstation : config.m_colWorkstation->ColWorkStations->items()) {
    characters += workstation->WorkStation.size() + decimal(workstation->configID).size() +
                  decimal(workstation->Flag2).size();
  }
  return characters * sizeof(wchar_t);
}

}  // namespace

void measureMemory(const Site& site) {
  // A first run excludes memory that the first use allocates permanently.
  initialised(site);
  disconnect();

  const std::size_t before = heapBytes();
  const std::shared_ptr<clsConfig> config = initialised(site);
  disconnect();
  const std::size_t after = heapBytes();
  record("memory", site.workstations, Series::Component, static_cast<double>(after - before));
  record("memory", site.workstations, Series::Baseline, static_cast<double>(textBytes(*config)));
}

}  // namespace tlpacscfg::bench
