#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <variant>

namespace tlpacscfg {

/// The value of one field: 16-bit, 32-bit, or text.
using FieldValue = std::variant<std::int16_t, std::int32_t, std::wstring>;

inline constexpr std::size_t kColumnCount = 38;
using FieldValues = std::array<FieldValue, kColumnCount>;

/// The flags that the component itself sets.
inline constexpr std::int16_t kTrue = -1;
inline constexpr std::int16_t kFalse = 0;

/// The number of the host's user, stored as the last user of a row that is saved.
std::wstring savingUser();

/// One integration configuration, one row of Interface_PACS_cfg. What the columns are called and
/// how they are written and read is in columns.h.
class clsPACSConfiguration {
 public:
  std::int16_t configID = 0;
  std::int16_t PACSType = 0;
  std::wstring Description;
  std::wstring RequestFileName;
  std::wstring ResponseFileName;
  std::int16_t BiDirectional = 0;
  std::int16_t ResPausedJobs = 0;
  std::int16_t ResAbortedJobs = 0;
  std::int16_t ResNonRequestJobs = 0;
  std::int16_t UpdateXMLData = 0;
  std::int16_t CofirmStartTrigger = 0;
  std::int16_t ManualEntryTrigger = 0;
  std::int16_t UserMappingOpt = 0;
  std::int16_t RequestPasswordOpt = 0;
  std::int16_t ResponsePasswordOpt = 0;
  std::wstring LastUpdateUserID;
  std::wstring LastUpdateDate;
  std::int16_t ResponseType = 0;
  std::wstring CustomXMLFile;
  std::wstring ApplicableFields;
  std::int16_t PollingOption = 0;
  std::int16_t PollingAction = 0;
  std::int32_t Port = 0;
  std::int16_t DeleteFlag = 0;
  std::int16_t ContextUpdate = 0;
  std::int16_t ContextChangeOption = 0;
  std::int16_t PollingDisplayField = 0;
  std::int16_t MultiAccessContext = 0;
  std::wstring ContextXMLFile;
  std::wstring MultiAccessFields;
  std::int16_t RequestDefaultText = 0;
  std::int16_t ResponseReportText = 0;
  std::int16_t CheckFileDateTime = 0;
  std::int16_t PreProcessFile = 0;
  std::int16_t CloseDictationEnabled = 0;
  std::wstring CloseDictationFile;
  std::int16_t CloseDictationAction = 0;
  std::int16_t SendAbortOnFailedOpen = 0;

  /// Not stored: decides between UPDATE and INSERT.
  std::int16_t ExistingConfig = 0;
  bool Deleted = false;
  std::int16_t Changed = 0;

  /// Takes the values in load order and marks the record as existing and unchanged. A value of
  /// another type than its field's throws TypeMismatch.
  void FillFields(FieldValues values);

  /// Marks the record as existing and unchanged.
  void MarkAsLoaded();

  /// Both empty every stored field and clear Changed; ExistingConfig and Deleted stay.
  void ClearAllFields();
  void InitAllFields();

  /// Everything but Changed.
  void CopyValues(clsPACSConfiguration& target) const;

  /// The VALUES list of an INSERT, without its parentheses.
  std::wstring getAllValues() const;

  /// The labelled summary, one line for each field. Throws TypeMismatch when MultiAccessFields
  /// holds anything but codes.
  std::wstring getAllValuesFormatted() const;

  /// The UPDATE of a record that exists, else the INSERT, as SaveConfiguration sends it.
  std::wstring savingStatement() const;

  /// Writes the row and the mark for offline copies; without a database it does nothing. Always 0.
  /// Throws when the direct connection fails.
  std::int16_t SaveConfiguration();

 private:
  std::wstring updateStatement() const;
  std::wstring insertStatement() const;
};

}  // namespace tlpacscfg
