#pragma once

#include <string>
#include <vector>

#include "client/session.h"
#include "data/tl_comm_client.h"

namespace tlpacscfg::cli {

/// The remote client without its COM object.
class ServiceClient : public TlCommClientObject {
 public:
  struct Address {
    std::wstring host;
    std::wstring port;
    std::wstring timeout;
  };

  /// Throws Failure when the service does not accept the client.
  ServiceClient(const client::Settings& settings, Address address);

  /// Whether the service accepts the client now.
  bool answers();

  bool ConnectToService(const std::wstring& application, const std::wstring& host,
                        const std::wstring& port, const std::wstring& timeout) override;
  void DisconnectFromService(const std::wstring& application) override;
  std::int32_t SQLQueryTable(const std::wstring& database, const std::wstring& sql) override;
  Table GetTableData(std::int16_t zeroBasedIndex) override;
  bool SQLExecuteText(const std::wstring& database, const std::wstring& sql) override;
  std::vector<std::wstring> GetNetworkDirectoryFiles(const std::wstring& directory,
                                                     const std::wstring& pattern) override;
  std::wstring CheckForError() override { return session_.CheckForError(); }

 private:
  client::Session session_;
  Address address_;
};

}  // namespace tlpacscfg::cli
