#include "config/stored_configuration.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <utility>

#include "config/row_reading.h"
#include "data/tl_comm_client.h"
#include "odbc/error.h"
#include "odbc/sql_tokens.h"
#include "support/conversions.h"
#include "support/system.h"
#include "support/text.h"

namespace tlpacscfg {
namespace {

RunTimeError notSaved(const std::wstring& reason) {
  return {odbc::kOdbcFailed, L"Nothing was saved. " + reason};
}

std::wstring fieldDescription(const std::wstring& name, const std::wstring& reason, bool saved) {
  return std::wstring(saved ? L"" : L"Nothing was saved. ") + L"Field '" + name + L"': " + reason;
}

bool sameText(std::wstring_view first, std::wstring_view second) {
  return trimTrailingBlanks(first) == trimTrailingBlanks(second);
}

/// Whether the stored value equals the known one, which was read or sent. A doubled quote that was
/// sent as it stands is stored as one.
bool isValueStoredAs(const Column& column, const FieldValue& known, const FieldValue& stored) {
  const auto* knownText = std::get_if<std::wstring>(&known);
  const auto* storedText = std::get_if<std::wstring>(&stored);
  if (knownText == nullptr || storedText == nullptr) return known == stored;
  return sameText(*knownText, *storedText) ||
         (column.quoting == Quoting::AsItStands &&
          sameText(sqlTextValue(L"'" + *knownText + L"'"), *storedText));
}

/// The number stored for the user; 0 for a text that is no number.
std::int32_t userOf(std::wstring_view text) { return ValOrDefault(text, 0); }

std::int64_t minutesSince1970(int year, int month, int day, int hour, int minute) {
  using namespace std::chrono;
  const sys_days date = std::chrono::year(year) / month / day;
  return duration_cast<minutes>(date.time_since_epoch()).count() + std::int64_t{60} * hour + minute;
}

/// Minutes since 1970 of "YYYY-MM-DD HH:MM...", days alone allowed; null for any other form.
std::optional<std::int64_t> minutesOf(std::wstring_view text) {
  const auto number = [&](std::size_t at, std::size_t length) {
    int value = 0;
    for (const wchar_t digit : text.substr(at, length)) {
      if (digit < L'0' || digit > L'9') return -1;
      value = value * 10 + (digit - L'0');
    }
    return value;
  };
  if (text.size() < 10 || text[4] != L'-' || text[7] != L'-') return std::nullopt;
  const bool hasTime = text.size() >= 16;
  const int year = number(0, 4), month = number(5, 2), day = number(8, 2);
  const int hour = hasTime ? number(11, 2) : 0, minute = hasTime ? number(14, 2) : 0;
  if (std::min({year, month, day, hour, minute}) < 0) return std::nullopt;
  return minutesSince1970(year, month, day, hour, minute);
}

/// Whether a stored time is the present, to find days and months that changed places. A column may
/// keep minutes or days only. A remote client's text of another form cannot be checked.
bool isNow(std::wstring_view stored) {
  const system::LocalTime now = system::localTime();
  const auto found = minutesOf(stored);
  if (!found) return dataPath().isRemote();
  const std::int64_t midnight = minutesSince1970(now.year, now.month, now.day, 0, 0);
  const std::int64_t expected =
      minutesSince1970(now.year, now.month, now.day, now.hour, now.minute);
  constexpr std::int64_t kSlowestSave = 10;
  return std::abs(*found - expected) <= kSlowestSave || *found == midnight;
}

std::wstring shown(const FieldValue& value) {
  std::wstring text = textOf(value);
  if (!std::holds_alternative<std::wstring>(value)) return text;
  constexpr std::size_t kMaxShown = 60;
  return L"'" + (text.size() > kMaxShown ? text.substr(0, kMaxShown) + L"..." : text) + L"'";
}

std::wstring whyDifferent(const FieldValue& meant, const FieldValue& stored) {
  const auto* whole = std::get_if<std::wstring>(&meant);
  const auto* kept = std::get_if<std::wstring>(&stored);
  if (whole != nullptr && kept != nullptr && whole->starts_with(trimTrailingBlanks(*kept))) {
    return L"It keeps " + decimal(kept->size()) + L" of " + decimal(whole->size()) +
           L" characters.";
  }
  if (whole != nullptr && kept != nullptr && whole->size() == kept->size()) {
    const auto [letter, replaced] = std::mismatch(whole->begin(), whole->end(), kept->begin());
    return std::wstring(L"It keeps '") + *replaced + L"' instead of '" + *letter + L"'.";
  }
  return L"It keeps " + shown(stored) + L" instead of " + shown(meant) + L".";
}

/// How the stored value differs from the one that the statement sent; null when it does not.
std::optional<std::wstring> difference(const Column& column, Source source,
                                       const clsPACSConfiguration& meant,
                                       const FieldValue& stored) {
  if (source == Source::SavingTime) {
    if (isNow(std::get<std::wstring>(stored))) return std::nullopt;
    return L"The database understands it as " + shown(stored) + L".";
  }
  const FieldValue value =
      source == Source::SavingUser ? savingUser() : valueOf(meant, column.field);
  if (isValueStoredAs(column, value, stored)) return std::nullopt;
  // A new record without a user writes an empty text, which a numeric column keeps as 0.
  const bool isUser = column.onUpdate == Source::SavingUser;
  if (isUser && userOf(std::get<std::wstring>(value)) == userOf(std::get<std::wstring>(stored))) {
    return std::nullopt;
  }
  return L"The database does not keep it as entered. " + whyDifferent(value, stored);
}

/// A single quote would end a text whose quotes are not doubled, and make the rest of it part of
/// the statement.
void checkQuotes(const clsPACSConfiguration& record) {
  const bool inserts = record.ExistingConfig == kFalse;
  for (const Column& column : columns()) {
    const Source source = inserts ? column.onInsert : column.onUpdate;
    if (column.quoting != Quoting::AsItStands || source != Source::Record) continue;
    if (!hasUnpairedQuote(std::get<std::wstring>(valueOf(record, column.field)))) continue;
    throw FieldError(column, L"It holds a single quote. Write it twice, or leave it out.");
  }
}

Configuration configurationIn(const Table& rows) {
  if (rows.rows() == 0) return nullptr;
  if (rows.rows() > 1) raise(ErrorNumber::DuplicateKey);
  if (rows.columns() < kColumnCount) raise(ErrorNumber::SubscriptOutOfRange);
  return recordOfRow([&](std::size_t column) { return rows.at(column, 0); },
                     dataPath().cellRules());
}

/// The rows after a statement; null when a remote client executed it but cannot read them.
std::optional<Table> rowsWritten(SiteCommand& command, std::int16_t configID) {
  try {
    return command.query(loadingStatement(configID));
  } catch (const RunTimeError&) {
    if (command.isTransaction()) throw;
    return std::nullopt;
  }
}

/// The row after a statement; null when a remote client executed it but cannot read it.
Configuration readBack(SiteCommand& command, std::int16_t configID) {
  const auto rows = rowsWritten(command, configID);
  if (!rows) return nullptr;
  Configuration stored = configurationIn(*rows);
  if (!stored) throw notSaved(L"The configuration is not in the database.");
  return stored;
}

/// Sends the record's statement and compares the row that it wrote.
void write(SiteCommand& command, clsPACSConfiguration& record) {
  command.execute(record.savingStatement());
  const Configuration stored = readBack(command, record.configID);
  if (stored) {
    requireStoredAsSent(command, record, stored);
    record.LastUpdateUserID = stored->LastUpdateUserID;
    record.LastUpdateDate = stored->LastUpdateDate;
  }
  record.ExistingConfig = kTrue;
}

/// False also when the database does not answer.
bool isStored(std::int16_t configID) {
  try {
    SiteCommand command;
    return storedConfiguration(command, configID) != nullptr;
  } catch (const RunTimeError&) {
    return false;
  }
}

/// False when the number is taken.
bool insertUnderItsNumber(clsPACSConfiguration& record) {
  SiteCommand command;
  if (storedConfiguration(command, record.configID)) return false;
  write(command, record);
  command.markAndCommit();
  return true;
}

}  // namespace

FieldError::FieldError(const Column& column, std::wstring reason, Configuration stored)
    : RunTimeError(odbc::kOdbcFailed, fieldDescription(column.property, reason, stored != nullptr)),
      column_(column),
      reason_(std::move(reason)),
      stored_(std::move(stored)) {}

std::wstring FieldError::descriptionFor(const std::wstring& fieldName) const {
  return fieldDescription(fieldName, reason_, stored_ != nullptr);
}

Configuration storedConfiguration(SiteCommand& command, std::int16_t configID) {
  return configurationIn(command.query(loadingStatement(configID)));
}

bool isStoredAs(const clsPACSConfiguration& known, const clsPACSConfiguration& stored) {
  return std::ranges::all_of(columns(), [&](const Column& column) {
    return !column.isContent() ||
           isValueStoredAs(column, valueOf(known, column.field), valueOf(stored, column.field));
  });
}

void requireStoredAsSent(const SiteCommand& command, const clsPACSConfiguration& sent,
                         const Configuration& stored) {
  const bool inserts = sent.ExistingConfig == kFalse;
  for (const Column& column : columns()) {
    const Source source = inserts ? column.onInsert : column.onUpdate;
    auto reason = difference(column, source, sent, valueOf(*stored, column.field));
    if (!reason) continue;
    throw FieldError(column, std::move(*reason), command.isTransaction() ? nullptr : stored);
  }
}

void storeNew(clsPACSConfiguration& record, const colPACSConfiguration& known) {
  if (!dataPath().executes()) return;
  checkQuotes(record);
  for (;; record.configID = toInt16(std::int64_t{record.configID} + 1)) {
    if (known.GetItemNumber(record.configID) != 0) continue;
    try {
      if (insertUnderItsNumber(record)) return;
    } catch (const OutcomeUnknown&) {
      throw;
    } catch (const FieldError&) {
      throw;
    } catch (const RunTimeError&) {
      if (dataPath().isRemote() || !isStored(record.configID)) throw;
    }
  }
}

std::optional<ForeignChange> storeChanged(clsPACSConfiguration& record,
                                          const Configuration& loaded) {
  if (!dataPath().executes()) return std::nullopt;
  checkQuotes(record);
  SiteCommand command;
  const Configuration stored = storedConfiguration(command, record.configID);
  if (stored ? !loaded || (!isStoredAs(*loaded, *stored) && !isStoredAs(record, *stored))
             : loaded != nullptr) {
    return ForeignChange{stored};
  }
  if (!stored) {
    record.ExistingConfig = kFalse;
    record.LastUpdateUserID = savingUser();
  }
  write(command, record);
  command.markAndCommit();
  return std::nullopt;
}

std::optional<ForeignChange> deleteStored(SiteCommand& command,
                                          const clsPACSConfiguration& loaded) {
  if (!command.reachesDatabase()) return std::nullopt;
  const Configuration stored = storedConfiguration(command, loaded.configID);
  if (!stored || !isStoredAs(loaded, *stored)) return ForeignChange{stored};
  command.execute(deletingStatement(loaded.configID));
  const auto rows = rowsWritten(command, loaded.configID);
  if (rows && rows->rows() > 0) throw notSaved(L"The configuration is still in the database.");
  command.markAndCommit();
  return std::nullopt;
}

}  // namespace tlpacscfg
