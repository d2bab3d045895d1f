#pragma once

#include <cstddef>
#include <cstdint>

/// What nobody may do to the default configuration.
namespace tlpacscfg {

inline constexpr std::int16_t kDefaultConfiguration = 1;
inline constexpr const wchar_t* kNotDeletable =
    L"You are not permitted to delete the 'Default Configuration'.";

/// Whether the description of a stored configuration may be changed.
constexpr bool mayRename(std::int16_t configID) { return configID != kDefaultConfiguration; }

/// The default configuration is the first row of the list here, whatever its identifier.
constexpr bool mayDelete(std::size_t row) { return row != 0; }

}  // namespace tlpacscfg
