#include "support/registry.h"

namespace tlpacscfg {

std::wstring ReadRegString(registry::Root root, const std::wstring& keyPath,
                           const std::wstring& valueName) {
  constexpr std::size_t kBufferCharacters = 256;
  const std::optional<registry::Value> value = registry::read(root, keyPath, valueName);
  if (!value) return {};
  const auto* text = std::get_if<std::wstring>(&*value);
  if (text == nullptr || text->empty() || text->size() > kBufferCharacters) return {};
  return text->substr(0, text->size() - 1);
}

}  // namespace tlpacscfg
