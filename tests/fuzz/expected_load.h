#pragma once

#include "config/pacs_configurations.h"
#include "fuzz/fuzz_tools.h"
#include "workstation/workstation.h"

/// What loading rows must lead to, written without the component's table of columns.
namespace tlpacscfg::fuzz {

inline constexpr std::size_t kConfigurationColumns = 38;
inline constexpr std::size_t kWorkstationColumns = 4;

enum class Path { Direct, Remote };

/// The records, each value as text, and the error that ended the load.
struct Load {
  std::vector<std::vector<std::wstring>> records;
  std::optional<std::int32_t> error;

  bool operator==(const Load&) const = default;
};

/// Rows of sound configurations with increasing identifiers, some of their cells replaced.
Rows takeConfigurations(FuzzedDataProvider& input);

/// The same for the list of workstations: name, configuration, access text, flag.
Rows takeWorkstations(FuzzedDataProvider& input);

Load expectedConfigurations(Path path, const Rows& rows, std::size_t columns);
Load expectedWorkstations(Path path, const Rows& rows, std::size_t columns);

/// What the component made of the rows. The configurations are those after the placeholder.
Load loadedConfigurations();
Load loadedWorkstations();

/// Ends the program, and shows both, unless they are the same.
void requireSame(const Load& found, const Load& expected, const char* property);

}  // namespace tlpacscfg::fuzz
