#include "support/brnkregs.h"

#include "support/text.h"

namespace tlpacscfg {
namespace {

using registry::Root;

bool isWritable(std::int16_t type) { return type == brnkregs::kText || type == brnkregs::kNumber; }

/// Hosts see the number with its sign.
std::wstring textOf(const registry::Value& value) {
  if (const auto* text = std::get_if<std::wstring>(&value)) return *text;
  return decimal(static_cast<std::int32_t>(std::get<std::uint32_t>(value)));
}

}  // namespace

bool brnkregs::CreateRegEntry(std::int16_t pDatatype, const std::wstring& KeyToAdd,
                              const registry::Value& ValueToAdd) {
  if (!registry::createKey(Root::LocalMachine, fullPath())) return false;
  return SetAppRegValue(KeyToAdd, pDatatype, ValueToAdd);
}

bool brnkregs::SetAppRegValue(const std::wstring& WhatKey, std::int16_t KeyDataType,
                              const registry::Value& NewKeyValue) {
  if (!registry::keyExists(Root::LocalMachine, fullPath())) return false;
  if (!isWritable(KeyDataType)) return true;
  return registry::write(Root::LocalMachine, fullPath(), WhatKey, NewKeyValue);
}

bool brnkregs::DeleteAllAppRegEntries() {
  return registry::deleteKey(Root::LocalMachine, fullPath());
}

std::optional<registry::Value> brnkregs::GetAppRegValue(const std::wstring& WhatKey,
                                                        std::int16_t KeyDataType) const {
  if (!registry::keyExists(Root::LocalMachine, fullPath())) return std::nullopt;
  if (!isWritable(KeyDataType)) return std::uint32_t{1};
  std::optional<registry::Value> value = registry::read(Root::LocalMachine, fullPath(), WhatKey);
  if (!value) return std::nullopt;
  const std::size_t bufferCharacters = KeyDataType == kText ? 255 : sizeof(std::uint32_t);
  const auto* text = std::get_if<std::wstring>(&*value);
  if (text && text->size() > bufferCharacters) return std::nullopt;
  return value;
}

std::wstring brnkregs::GetRegValue(const std::wstring& strKey,
                                   const std::wstring& strDefaultString) {
  const std::optional<registry::Value> value = GetAppRegValue(strKey, kText);
  if (!value && !strDefaultString.empty()) CreateRegEntry(kText, strKey, strDefaultString);
  std::wstring result = value ? textOf(*value) : strDefaultString;
  if (result.ends_with(L'\0')) result.pop_back();
  return result;
}

}  // namespace tlpacscfg
