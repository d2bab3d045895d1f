#include "data/data_path.h"

#include <tuple>

#include "data/mod_main.h"
#include "data/tl_comm_client.h"
#include "log/log_support.h"
#include "support/directory.h"
#include "support/runtime_error.h"
#include "support/text.h"

namespace tlpacscfg {
namespace {

constexpr const wchar_t* kTestStatement = L"SELECT GetDate()";

CellRules cellRulesOf(const std::shared_ptr<odbc::Connection>& connection) {
  return connection && connection->emptyTextsComeAsNull() ? CellRules::DatabaseWithoutEmptyTexts
                                                          : CellRules::Database;
}

class DirectPath : public DataPath {
 public:
  bool executes() const override { return true; }
  CellRules cellRules() const override { return cellRulesOf(modMain.g_conSql); }

  bool test() const override {
    modMain.g_rsQuery.reset();
    try {
      openSharedResult(modMain.g_conSql, kTestStatement);
    } catch (const std::exception& error) {
      logFailure(L"Database connection test failed", describe(error));
      return false;
    }
    return DataPath::test();
  }

  std::shared_ptr<ResultSet> load(const std::wstring& sql, const RemoteLogLine&) const override {
    return modMain.g_conSql ? openSharedResult(modMain.g_conSql, sql) : nullptr;
  }

  void fillSharedResult(const std::wstring& sql) const override {
    openSharedResult(modMain.g_conSql, sql);
  }

  void execute(const std::wstring& sql) const override {
    WriteLog(L"[TLPACSCFG] Executing query", log_level::kOperation);
    WriteLog(std::wstring(L"[TLPACSCFG] Query:") + kLineBreak + sql, log_level::kStatementText);
    transactionConnection()->execute(sql);
  }

  void executeIntoSharedResult(const std::wstring& sql) const override { fillSharedResult(sql); }

  Table query(const std::wstring& sql) const override {
    return transactionConnection()->query(sql);
  }

  std::shared_ptr<odbc::Connection> transactionConnection() const override {
    if (!modMain.g_conSql) raise(ErrorNumber::ObjectNotSet);
    return modMain.g_conSql;
  }
};

class RemotePath : public DataPath {
 public:
  bool isRemote() const override { return true; }
  bool executes() const override { return true; }
  CellRules cellRules() const override { return CellRules::RemoteClient; }

  bool test() const override { return TlCommClientExecute(kTestStatement); }

  std::shared_ptr<ResultSet> load(const std::wstring& sql,
                                  const RemoteLogLine& remoteLogLine) const override {
    WriteLog(remoteLogLine.text, remoteLogLine.level);
    Table data;
    if (TlCommClientQuery(sql) != 1 || !TlCommClientGetDataset(1, data)) return nullptr;
    return std::make_shared<ResultSet>(std::move(data));
  }

  bool hasRow(const std::wstring& sql, const RemoteLogLine& remoteLogLine) const override {
    try {
      const auto rows = load(sql, remoteLogLine);
      return rows && !rows->EndOfData();
    } catch (const std::exception&) {
      return false;
    }
  }

  void execute(const std::wstring& sql) const override { std::ignore = TlCommClientExecute(sql); }

  Table query(const std::wstring& sql) const override { return requireTlCommClientTable(sql); }
  void require(const std::wstring& sql) const override { requireTlCommClientExecution(sql); }

  std::vector<std::wstring> xmlFiles(const std::wstring& directory) const override {
    std::vector<std::wstring> files;
    if (!TlCommClientGetFileList(directory, L"*.XML", files)) files.clear();
    return files;
  }
};

class StandAlonePath : public DataPath {
 public:
  CellRules cellRules() const override { return cellRulesOf(modMain.g_conOffline); }

  std::shared_ptr<ResultSet> load(const std::wstring& sql, const RemoteLogLine&) const override {
    if (!modMain.g_blnOfflineConnected || !modMain.g_conOffline) return nullptr;
    return openSharedResult(modMain.g_conOffline, sql);
  }

  Table query(const std::wstring& sql) const override {
    if (!modMain.g_conOffline) raise(ErrorNumber::ObjectNotSet);
    return modMain.g_conOffline->query(sql);
  }
};

}  // namespace

bool DataPath::test() const {
  if (!modMain.g_rsQuery) return false;
  try {
    const bool atEnd = modMain.g_rsQuery->EndOfData();
    modMain.g_rsQuery->Close();
    return !atEnd;
  } catch (const std::exception&) {
    // A result set that was closed earlier cannot be read; the test passes all the same.
    return true;
  }
}

std::shared_ptr<ResultSet> DataPath::load(const std::wstring& /*sql*/,
                                          const RemoteLogLine& /*remoteLogLine*/) const {
  return nullptr;
}

bool DataPath::hasRow(const std::wstring& sql, const RemoteLogLine& /*remoteLogLine*/) const {
  const auto rows = openSharedResult(modMain.g_conSql, sql);
  const bool found = !rows->EndOfData();
  rows->Close();
  return found;
}

std::vector<std::wstring> DataPath::xmlFiles(const std::wstring& directory) const {
  return findXmlFiles(directory);
}

const DataPath& dataPath() {
  static const RemotePath remote;
  static const DirectPath direct;
  static const DataPath none;
  if (TlCommClientConnected()) return remote;
  if (modMain.g_blnSqlConnected) return direct;
  return none;
}

const DataPath& loadingPath() {
  static const StandAlonePath standAlone;
  return modMain.g_blnUseOfflineDB ? standAlone : dataPath();
}

}  // namespace tlpacscfg
