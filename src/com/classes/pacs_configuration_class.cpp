#include "com/classes/required.h"
#include "automation/com_class.h"
#include "com/identities.h"
#include "automation/member_table.h"
#include "config/columns.h"
#include "config/pacs_configuration.h"

namespace tlpacscfg {
namespace {

using Record = clsPACSConfiguration;
using Members = MemberTable<Record>;

void addColumns(Members& members) {
  DISPID id = 0;
  for (const Column& column : columns()) {
    ++id;
    std::visit([&](auto member) { members.field(column.property, id, member); }, column.field);
  }
}

Members::Names propertiesInLoadOrder() {
  Members::Names names;
  for (const Column* column : columnsInLoadOrder()) names.emplace_back(column->property);
  return names;
}

OwnedVariant fillFields(Record& record, Arguments& arguments) {
  FieldValues values;
  for (std::size_t i = 0; i < kColumnCount; ++i) {
    values[i] = std::visit(
        [&]<class Value>(Value Record::*) -> FieldValue { return arguments.get<Value>(i); },
        columnsInLoadOrder()[i]->field);
  }
  record.FillFields(std::move(values));
  return OwnedVariant();
}

std::vector<Member> configurationMembers() {
  Members members;
  addColumns(members);
  return members.field(L"ExistingConfig", 39, &Record::ExistingConfig)
      .field(L"Deleted", 40, &Record::Deleted)
      .field(L"Changed", 41, &Record::Changed)
      .rawMethod(L"FillFields", 42, propertiesInLoadOrder(), 0, fillFields)
      .method(L"ClearAllFields", 43, {}, &Record::ClearAllFields)
      .method(L"InitAllFields", 44, {}, &Record::InitAllFields)
      .method(L"CopyValues", 45, {L"target"},
              [](Record& record, const std::shared_ptr<Record>& target) {
                record.CopyValues(*required(target));
              })
      .method(L"getAllValues", 46, {}, &Record::getAllValues)
      .method(L"SaveConfiguration", 47, {}, &Record::SaveConfiguration)
      .method(L"getAllValuesFormatted", 48, {}, &Record::getAllValuesFormatted)
      .members();
}

}  // namespace

template <>
const ComClass& comClassOf<clsPACSConfiguration>() {
  static const ComClass type{CLSID_clsPACSConfiguration, DIID__clsPACSConfiguration,
                             configurationMembers()};
  return type;
}

}  // namespace tlpacscfg
