#pragma once

#include <span>

#include "config/pacs_configuration.h"

/// The one table of Interface_PACS_cfg. Every statement, the loading of rows, copying, clearing and
/// the properties that hosts see are loops over it.
namespace tlpacscfg {

using Field =
    std::variant<std::int16_t clsPACSConfiguration::*, std::int32_t clsPACSConfiguration::*,
                 std::wstring clsPACSConfiguration::*>;

enum class Quoting {
  None,
  AsItStands,  ///< In quotes, its own quotes not doubled: hosts and reports rely on it.
  Doubled,
};

/// Where the value of a column comes from when a row is written.
enum class Source { Record, SavingUser, SavingTime };

struct Column {
  const wchar_t* property;
  const wchar_t* name;
  Field field;
  Quoting quoting;
  /// The text used for NULL when a row is loaded; null where NULL is an error.
  const wchar_t* ifNull;
  /// The place in the SELECT and among the arguments of FillFields. It differs from the place in
  /// the table, which is the order of the INSERT.
  std::size_t loadPosition;
  /// Before the column in the SET clause, whose first separators have no blank.
  const wchar_t* updateSeparator;
  Source onInsert = Source::Record;
  Source onUpdate = Source::Record;

  /// Whether the user enters the value, unlike the number and the last change.
  bool isContent() const { return loadPosition != 0 && onUpdate == Source::Record; }
};

/// In the order of the table.
std::span<const Column, kColumnCount> columns();

/// In the order of loading.
std::span<const Column* const, kColumnCount> columnsInLoadOrder();

FieldValue valueOf(const clsPACSConfiguration& record, const Field& field);

/// Throws TypeMismatch when the value is of another type.
void setValue(clsPACSConfiguration& record, const Field& field, FieldValue value);

bool isText(const Field& field);

/// The text, or the digits of the number.
std::wstring textOf(const FieldValue& value);

/// "Select <columns> <line break> from Interface_PACS_cfg order by config_id"
std::wstring loadingStatement();
/// The same for the rows of one configuration.
std::wstring loadingStatement(std::int16_t configID);

}  // namespace tlpacscfg
