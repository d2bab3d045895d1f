#include "benchmarks/collector.h"

#include "data/tl_comm_client.h"

namespace tlpacscfg::bench {
namespace {

/// In the place of the remote data client it is given every text.
class Collector : public TlCommClientObject {
 public:
  explicit Collector(std::vector<std::wstring>& texts) : texts_(texts) {}

  bool ConnectToService(const std::wstring&, const std::wstring&, const std::wstring&,
                        const std::wstring&) override {
    return true;
  }
  void DisconnectFromService(const std::wstring&) override {}
  std::int32_t SQLQueryTable(const std::wstring&, const std::wstring&) override { return 0; }
  Table GetTableData(std::int16_t) override { return Table(); }
  bool SQLExecuteText(const std::wstring&, const std::wstring& sql) override {
    texts_.push_back(sql);
    return true;
  }
  std::vector<std::wstring> GetNetworkDirectoryFiles(const std::wstring&,
                                                     const std::wstring&) override {
    return {};
  }
  std::wstring CheckForError() override { return {}; }

 private:
  std::vector<std::wstring>& texts_;
};

}  // namespace

std::vector<std::wstring> textsExecutedBy(const std::function<void()>& action) {
  std::vector<std::wstring> texts;
  g_objTlCommClient = std::make_unique<Collector>(texts);
  action();
  g_objTlCommClient.reset();
  return texts;
}

}  // namespace tlpacscfg::bench
