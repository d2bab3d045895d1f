#include "config/pacs_configuration.h"

#include <utility>

#include "config/columns.h"
#include "data/mod_main.h"
#include "data/statements.h"
#include "data/workstation_key.h"
#include "log/log_support.h"
#include "support/text.h"

namespace tlpacscfg {
namespace {

std::wstring quoted(const std::wstring& text) { return L"'" + text + L"'"; }

std::wstring encode(const std::wstring& text, Quoting quoting) {
  switch (quoting) {
    case Quoting::Doubled:
      return quoted(FixQuotes(text));
    case Quoting::AsItStands:
      return quoted(text);
    case Quoting::None:
      break;
  }
  return text;
}

/// YYYY-MM-DD HH:MM:SS
std::wstring savingTime() { return FormatTimestamp().substr(0, 19); }

std::wstring encodedValue(const clsPACSConfiguration& record, const Column& column, Source source) {
  switch (source) {
    case Source::SavingUser:
      return savingUser();
    case Source::SavingTime:
      return quoted(savingTime());
    case Source::Record:
      break;
  }
  return encode(textOf(valueOf(record, column.field)), column.quoting);
}

}  // namespace

std::wstring savingUser() {
  return decimal(modMain.g_objConfig ? modMain.g_objConfig->User_ID : std::int16_t{0});
}

void clsPACSConfiguration::FillFields(FieldValues values) {
  for (std::size_t i = 0; i < kColumnCount; ++i) {
    setValue(*this, columnsInLoadOrder()[i]->field, std::move(values[i]));
  }
  MarkAsLoaded();
}

void clsPACSConfiguration::MarkAsLoaded() {
  ExistingConfig = kTrue;
  Changed = kFalse;
}

void clsPACSConfiguration::ClearAllFields() {
  for (const Column& column : columns()) {
    std::visit([this](auto member) { this->*member = {}; }, column.field);
  }
  Changed = kFalse;
}

void clsPACSConfiguration::InitAllFields() { ClearAllFields(); }

void clsPACSConfiguration::CopyValues(clsPACSConfiguration& target) const {
  const std::int16_t changed = target.Changed;
  target = *this;
  target.Changed = changed;
}

std::wstring clsPACSConfiguration::getAllValues() const {
  std::wstring values;
  for (const Column& column : columns()) {
    if (!values.empty()) values += L", ";
    values += encodedValue(*this, column, column.onInsert);
  }
  return values;
}

std::wstring clsPACSConfiguration::savingStatement() const {
  return ExistingConfig != kFalse ? updateStatement() : insertStatement();
}

std::int16_t clsPACSConfiguration::SaveConfiguration() {
  const std::wstring sql = savingStatement();
  if (ExistingConfig == kFalse) ExistingConfig = kTrue;
  ExecuteSQL(sql);
  AddOfflineDbUpdate();
  return 0;
}

std::wstring clsPACSConfiguration::updateStatement() const {
  std::wstring set = L"SET ";
  for (const Column& column : columns().subspan<1>()) {
    set += column.updateSeparator;
    set += column.name;
    set += L" = " + encodedValue(*this, column, column.onUpdate);
  }
  return std::wstring(L"UPDATE Interface_PACS_cfg") + kLineBreak + set + kLineBreak +
         L"WHERE config_id = " + decimal(configID);
}

std::wstring clsPACSConfiguration::insertStatement() const {
  std::wstring names;
  for (const Column& column : columns()) {
    names += names.empty() ? L" " : L", ";
    names += column.name;
  }
  return std::wstring(L"INSERT into Interface_PACS_cfg") + kLineBreak + L"(" + names + L")" +
         kLineBreak + L"VALUES(" + getAllValues() + L")";
}

}  // namespace tlpacscfg
