#include "automation/com_class.h"
#include "com/identities.h"
#include "automation/member_table.h"
#include "support/brnkregs.h"

namespace tlpacscfg {
namespace {

/// The new value converted for the registry type. For a type that is never written, any value will
/// do.
registry::Value newValue(std::int16_t dataType, const Arguments& arguments, std::size_t parameter) {
  if (dataType == brnkregs::kText) return arguments.get<std::wstring>(parameter);
  if (dataType != brnkregs::kNumber) return std::wstring();
  return static_cast<std::uint32_t>(arguments.get<std::int32_t>(parameter));
}

OwnedVariant toVariant(const registry::Value& value) {
  if (const auto* text = std::get_if<std::wstring>(&value)) return OwnedVariant(*text);
  return OwnedVariant(static_cast<std::int32_t>(std::get<std::uint32_t>(value)));
}

OwnedVariant createRegEntry(brnkregs& registry, Arguments& arguments) {
  const auto dataType = arguments.get<std::int16_t>(0);
  const auto key = arguments.get<std::wstring>(1);
  return OwnedVariant(registry.CreateRegEntry(dataType, key, newValue(dataType, arguments, 2)));
}

OwnedVariant setAppRegValue(brnkregs& registry, Arguments& arguments) {
  const auto key = arguments.get<std::wstring>(0);
  const auto dataType = arguments.get<std::int16_t>(1);
  return OwnedVariant(registry.SetAppRegValue(key, dataType, newValue(dataType, arguments, 2)));
}

OwnedVariant getAppRegValue(brnkregs& registry, Arguments& arguments) {
  const auto key = arguments.get<std::wstring>(0);
  const auto value = registry.GetAppRegValue(key, arguments.get<std::int16_t>(1));
  if (value) arguments.put(2, toVariant(*value));
  return OwnedVariant(value.has_value());
}

std::vector<Member> registryMembers() {
  return MemberTable<brnkregs>()
      .rawMethod(L"CreateRegEntry", 1, {L"pDatatype", L"KeyToAdd", L"ValueToAdd"}, 0,
                 createRegEntry)
      .method(L"DeleteAllAppRegEntries", 2, {}, &brnkregs::DeleteAllAppRegEntries)
      .rawMethod(L"GetAppRegValue", 3, {L"WhatKey", L"KeyDataType", L"KeyValue"}, 0, getAppRegValue)
      .rawMethod(L"SetAppRegValue", 4, {L"WhatKey", L"KeyDataType", L"NewKeyValue"}, 0,
                 setAppRegValue)
      .method(L"GetRegValue", 5, {L"strKey", L"strDefaultString"}, &brnkregs::GetRegValue)
      .get(L"AppRegPath", 6, &brnkregs::appRegPath)
      .put(L"AppRegPath", 6, &brnkregs::setAppRegPath)
      .get(L"AppName", 7, &brnkregs::appName)
      .put(L"AppName", 7, &brnkregs::setAppName)
      .members();
}

}  // namespace

template <>
const ComClass& comClassOf<brnkregs>() {
  static const ComClass type{CLSID_brnkregs, DIID__brnkregs, registryMembers()};
  return type;
}

}  // namespace tlpacscfg
