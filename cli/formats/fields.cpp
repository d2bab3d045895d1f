#include "cli/formats/fields.h"

#include <algorithm>
#include <unordered_map>

#include "cli/base/failure.h"
#include "cli/base/suggestion.h"
#include "config/option_tables.h"
#include "support/conversions.h"
#include "support/runtime_error.h"
#include "support/text.h"
#include "ui/settings/values/settings_binding.h"
#include "ui/settings/values/settings_options.h"

namespace tlpacscfg::cli {
namespace {

constexpr tlpacscfg::Option kFlags[] = {{L"no", 0}, {L"yes", 1}};

CodeTable findCodes(const Column& column) {
  const auto binding = std::ranges::find(bindings(), column.field, &Binding::field);
  if (binding == bindings().end()) return {};
  switch (binding->conversion) {
    case Conversion::Tick:
      return kFlags;
    case Conversion::Code:
    case Conversion::Position:
      return optionsOf(binding->control);
    case Conversion::LogonMapping:
      return kUserMappings;
    case Conversion::ContextChange:
      return kContextChanges;
    case Conversion::OptionIndex:
      return kMultiAccess;
    default:
      return {};
  }
}

/// The codes of a column and their texts; empty for texts and plain numbers.
CodeTable codesOf(const Column& column) {
  static const std::vector<CodeTable> tables = [] {
    std::vector<CodeTable> found;
    for (const Column& each : columns()) found.push_back(findCodes(each));
    return found;
  }();
  return tables[static_cast<std::size_t>(&column - columns().data())];
}

FieldValue numberIn(const Column& column, const std::wstring& text) {
  if (std::holds_alternative<std::int32_t clsPACSConfiguration::*>(column.field)) {
    return toInt32(text);
  }
  return toInt16(text);
}

std::wstring codesOfNames(const std::wstring& list) {
  std::wstring codes;
  for (const std::wstring_view piece : split(list, L',')) {
    const auto field = std::ranges::find_if(
        kDictationFields, [&](const tlpacscfg::Option& option) { return option.text == piece; });
    if (field == std::end(kDictationFields)) continue;
    codes += (codes.empty() ? L"" : L",") + decimal(field->code);
  }
  return codes;
}

using ColumnsByName = std::unordered_map<std::wstring, const Column*>;

/// By their names in capitals. A property's name comes before the same name of another kind.
ColumnsByName columnsByName() {
  using NameOf = std::wstring (*)(const Column&);
  const NameOf namings[] = {[](const Column& column) { return std::wstring(column.property); },
                            [](const Column& column) { return std::wstring(column.name); },
                            captionOf};
  ColumnsByName named;
  for (const NameOf nameOf : namings) {
    for (const Column& column : columns()) named.try_emplace(upperCase(nameOf(column)), &column);
  }
  return named;
}

}  // namespace

const Column& columnNamed(std::string_view name) {
  static const ColumnsByName named = columnsByName();
  const auto found = named.find(upperCase(fromUtf8(name)));
  if (found != named.end()) return *found->second;
  std::vector<std::string> known;
  for (const Column& column : columns()) known.push_back(toUtf8(column.property));
  throw Failure(ExitCode::Usage,
                "There is no field '" + std::string(name) + "'." + suggestion(name, known));
}

std::string wordsOf(const Column& column, const FieldValue& value) {
  if (const auto* code = std::get_if<std::int16_t>(&value)) {
    const CodeTable table = codesOf(column);
    const auto option = std::ranges::find(table, *code, &tlpacscfg::Option::code);
    if (option != table.end()) return toUtf8(option->text);
  }
  return toUtf8(tlpacscfg::textOf(value));
}

std::string wordsOf(const Column& column, const clsPACSConfiguration& record) {
  return wordsOf(column, valueOf(record, column.field));
}

bool isKnownOption(const Column& column, const clsPACSConfiguration& record) {
  const CodeTable table = codesOf(column);
  if (table.empty() || table.data() == kFlags) return true;
  const auto code = record.*std::get<std::int16_t clsPACSConfiguration::*>(column.field);
  return std::ranges::find(table, code, &tlpacscfg::Option::code) != table.end();
}

FieldValue valueIn(const Column& column, const std::string& text) {
  const std::wstring wide = fromUtf8(text);
  if (isText(column.field)) return wide;
  const CodeTable table = codesOf(column);
  for (const tlpacscfg::Option& option : table) {
    if (equalIgnoringCase(option.text, wide)) return option.code;
  }
  try {
    return numberIn(column, wide);
  } catch (const RunTimeError&) {
    std::vector<std::string> known;
    for (const tlpacscfg::Option& option : table) known.push_back(toUtf8(option.text));
    throw Failure(ExitCode::Usage, toUtf8(column.property) + ": '" + text +
                                       "' is none of its values." + suggestion(text, known));
  }
}

std::string summaryOf(const clsPACSConfiguration& record) {
  try {
    return toUtf8(record.getAllValuesFormatted());
  } catch (const RunTimeError&) {
    clsPACSConfiguration printable = record;
    printable.MultiAccessFields = codesOfNames(record.MultiAccessFields);
    return toUtf8(printable.getAllValuesFormatted());
  }
}

}  // namespace tlpacscfg::cli
