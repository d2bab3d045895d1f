#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "client/endpoint.h"
#include "odbc/table.h"

namespace tlpacscfg::client {

/// The seven methods of the client. None of them throws: a failure answers false, 0 or nothing and
/// stores its reason for CheckForError, which the next call of another method clears.
class Session {
 public:
  struct FileFlags {
    bool recurse, sorted, ignoreCase, directories, fullPaths;
  };

  /// How this computer reaches a host; throws ClientError.
  using SettingsOfHost = std::function<Settings(const std::wstring& host)>;

  explicit Session(SettingsOfHost settingsOf);

  bool ConnectToService(const std::wstring& application, const std::wstring& host,
                        const std::wstring& port, const std::wstring& timeout);
  void DisconnectFromService();
  std::int32_t SQLQueryTable(const std::wstring& database, const std::wstring& sql);
  /// Null on failure and for a table without rows.
  const Table* GetTableData(std::int16_t index);
  bool SQLExecuteText(const std::wstring& database, const std::wstring& sql);
  std::vector<std::wstring> GetNetworkDirectoryFiles(const std::wstring& directory,
                                                     const std::wstring& pattern,
                                                     const FileFlags& flags);
  const std::wstring& CheckForError() const { return lastError_; }

  /// Stores the exception being handled for CheckForError.
  void noteFailure() noexcept;

 private:
  template <class Result, class Work>
  Result attempt(Result failed, Work work);
  Endpoint& endpoint() const;

  SettingsOfHost settingsOf_;
  std::unique_ptr<Endpoint> endpoint_;
  std::vector<Table> tables_;
  std::wstring lastError_;
};

}  // namespace tlpacscfg::client
