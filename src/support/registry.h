#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <variant>

/// The registry. The Linux build has a substitute in memory.
namespace tlpacscfg::registry {

enum class Root { LocalMachine, CurrentUser };

using Value = std::variant<std::wstring, std::uint32_t>;

/// A value as it is stored: text with the terminating zero that the registry reports (an empty text
/// has none); the number 1 for a type other than text and 32-bit number. nullopt when the key or
/// the value does not exist.
std::optional<Value> read(Root root, const std::wstring& keyPath, const std::wstring& name);

bool keyExists(Root root, const std::wstring& keyPath);

/// Creates missing parent keys too. A key with subkeys is not deleted.
bool createKey(Root root, const std::wstring& keyPath);
bool deleteKey(Root root, const std::wstring& keyPath);

/// Text is written without a terminating zero. False when the key does not exist.
bool write(Root root, const std::wstring& keyPath, const std::wstring& name, const Value& value);

}  // namespace tlpacscfg::registry

namespace tlpacscfg {

/// A text value of at most 255 characters; empty when it is missing, longer, or not text.
std::wstring ReadRegString(registry::Root root, const std::wstring& keyPath,
                           const std::wstring& valueName);

}  // namespace tlpacscfg
