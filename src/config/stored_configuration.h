#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "config/columns.h"
#include "config/pacs_configurations.h"
#include "data/site_command.h"
#include "support/runtime_error.h"

/// How the windows store and delete configurations. Each function reads what is stored now before
/// it writes, finds what somebody else changed since a record was loaded, and reads back what it
/// wrote. Records and collections that a host calls write without any of this.
namespace tlpacscfg {

using Configuration = std::shared_ptr<clsPACSConfiguration>;

/// Somebody else changed or deleted the configuration since it was loaded. Nothing was written.
struct ForeignChange {
  Configuration stored;  ///< As it is now; null when it was deleted.
};

/// A field that cannot be stored as it was entered.
class FieldError : public RunTimeError {
 public:
  FieldError(const Column& column, std::wstring reason, Configuration stored = nullptr);

  const Column& column() const { return column_; }
  /// What was stored in spite of the error, which the remote path cannot roll back. Null when
  /// nothing was saved.
  const Configuration& stored() const { return stored_; }
  /// The description with the field's name as the window shows it.
  std::wstring descriptionFor(const std::wstring& fieldName) const;

 private:
  const Column& column_;
  std::wstring reason_;
  Configuration stored_;
};

/// The configuration as it is stored now, read as a load reads it; null when there is none. Throws
/// DuplicateKey when there are several.
Configuration storedConfiguration(SiteCommand& command, std::int16_t configID);

/// Whether the stored row holds what the record was loaded with or last sent. Trailing blanks and
/// the last change are not compared; a doubled quote that was sent as it stands is stored as one.
bool isStoredAs(const clsPACSConfiguration& known, const clsPACSConfiguration& stored);

/// Throws FieldError unless the stored row holds what the statement of a record sent.
void requireStoredAsSent(const SiteCommand& command, const clsPACSConfiguration& sent,
                         const Configuration& stored);

/// Inserts the record under its number, or under the next one that neither the database nor the
/// collection holds. On success the record is marked as existing and has its last change. Does
/// nothing while no database is open, like the functions below.
void storeNew(clsPACSConfiguration& record, const colPACSConfiguration& known);

/// Updates the row of `record`, which was loaded as `loaded`. A null `loaded` says that the row is
/// known to be deleted, and inserts it again.
[[nodiscard]] std::optional<ForeignChange> storeChanged(clsPACSConfiguration& record,
                                                        const Configuration& loaded);

/// Deletes the row of a configuration that was loaded as `loaded`. The caller may have asked
/// further questions with the command.
[[nodiscard]] std::optional<ForeignChange> deleteStored(SiteCommand& command,
                                                        const clsPACSConfiguration& loaded);

}  // namespace tlpacscfg
