#include "faults/matrix/scenarios.h"

#include "data/direct_connections.h"
#include "data/mod_main.h"
#include "host/host_object.h"
#include "support/text.h"

namespace tlpacscfg::test {
namespace {

/// A text that fits into no page that is left on a full disk.
const std::wstring kLongText(10'000, L'x');

/// One more than a command of the component stores.
constexpr int kWorkstations = 101;

class LoadScenario : public Scenario {
 public:
  void start() override {
    for (int i = 1; i <= 3; ++i) {
      addConfiguration(i);
      addWorkstation(L"PC-" + decimal(i));
      assign(L"PC-" + decimal(i), L"'1'");
    }
    newHost();
  }
  void startAgain() override {
    // A host that was told of success goes on with a new object.
    if (host_->Initialized) newHost();
  }
  std::wstring memory() const override {
    const auto count = [](const auto& collection) { return decimal(collection->count()); };
    std::wstring text = host_->Initialized ? L"initialised" : L"not initialised";
    if (host_->m_colPACSConfig) text += L", " + count(host_->m_colPACSConfig->ColPACSConfigs);
    if (host_->m_colWorkstation) text += L" and " + count(host_->m_colWorkstation->ColWorkStations);
    return text;
  }

 protected:
  std::wstring act() override { return truthWord(host_->Init()); }
  int lineOfCommand(int) const override { return 1; }
  Damage unreadableRow(int row) const override {
    return row <= 3 ? spoilReading(L"Interface_PACS_cfg", L"config_id = " + decimal(row))
                    : spoilReading(L"System_pc_names", L"pc_name = 'PC-" + decimal(row - 3) + L"'");
  }
  Damage badValue(int row) const override {
    const auto update = [&](const wchar_t* value) {
      if (row <= 3) {
        return std::wstring(L"UPDATE Interface_PACS_cfg SET flag18 = ") + value +
               L" WHERE config_id = " + decimal(row);
      }
      return std::wstring(L"UPDATE System_pc_names SET flag2 = ") + value +
             L" WHERE pc_name = 'PC-" + decimal(row - 3) + L"'";
    };
    return {{update(L"'bad'")}, {update(row <= 3 ? L"0" : L"1")}};
  }

 private:
  void newHost() {
    host_ = std::make_shared<clsConfig>();
    host_->settings->SQLDSN = config.SQLDSN;
  }

  std::shared_ptr<clsConfig> host_;
};

/// One record, new or stored before.
class SaveScenario : public Scenario {
 public:
  explicit SaveScenario(bool stored) : stored_(stored) {}

  void start() override {
    modMain.g_objConfig = std::make_shared<HostSettings>(config);
    if (stored_) addConfiguration(7, L"description = 'before'");
    connectSilently();
    edit();
  }
  void startAgain() override {
    // The editor makes a record of its own for each try to add a configuration.
    const bool there = site.value(L"SELECT count(*) FROM Interface_PACS_cfg") == L"1";
    if (!there) edit();
  }
  std::wstring memory() const override {
    EXPECT_EQ(record_.Description, kLongText);
    return record_.ExistingConfig == kTrue ? L"existing" : L"new";
  }

 protected:
  std::wstring act() override { return record_.SaveConfiguration() == 0 ? L"0" : L"?"; }
  Damage refusal(int row) const override {
    if (row == 2) return refuseMark();
    return refuse(std::wstring(stored_ ? L"UPDATE" : L"INSERT") + L" ON Interface_PACS_cfg");
  }

 private:
  void edit() {
    record_ = clsPACSConfiguration();
    record_.configID = 7;
    record_.Description = kLongText;
    record_.LastUpdateUserID = L"4711";
    record_.ExistingConfig = stored_ ? kTrue : kFalse;
  }

  bool stored_;
  clsPACSConfiguration record_;
};

class SaveAllScenario : public Scenario {
 public:
  void start() override {
    modMain.g_objConfig = std::make_shared<HostSettings>(config);
    for (int i = 1; i <= 3; ++i) addConfiguration(i);
    connectSilently();
    configurations_.AddIntitialConfig();
    for (std::int16_t i = 1; i <= 3; ++i) {
      const auto record = std::make_shared<clsPACSConfiguration>();
      record->configID = i;
      record->Description = kLongText;
      record->ExistingConfig = kTrue;
      configurations_.AddCurrenttoCollection(record);
    }
  }
  std::wstring memory() const override {
    return decimal(configurations_.ColPACSConfigs->count()) + L" records";
  }
  std::wstring outline() const override {
    return *site.value(
        L"SELECT count(*) FROM Interface_PACS_cfg WHERE length(description) = 10000");
  }

 protected:
  std::wstring act() override {
    configurations_.SaveAllConfigurations();
    return L"done";
  }
  Damage refusal(int row) const override {
    return refuse(L"UPDATE ON Interface_PACS_cfg", L"NEW.config_id = " + decimal(row));
  }

 private:
  colPACSConfiguration configurations_;
};

class DeleteScenario : public Scenario {
 public:
  void start() override {
    for (int i = 1; i <= 3; ++i) addConfiguration(i);
    connectSilently();
    load();
  }
  void startAgain() override {
    if (site.value(L"SELECT count(*) FROM Interface_PACS_cfg") != L"3") addConfiguration(2);
    load();
  }
  std::wstring memory() const override {
    return configurations_.GetItemNumber(2) == 0 ? L"gone" : L"held";
  }

 protected:
  std::wstring act() override {
    configurations_.RemoveConfig(2);
    return L"done";
  }
  /// The DELETE is not logged; the mark after it is.
  int lineOfCommand(int command) const override { return command == 1 ? 0 : 1; }
  Damage refusal(int row) const override {
    return row == 1 ? refuse(L"DELETE ON Interface_PACS_cfg") : refuseMark();
  }

 private:
  void load() {
    configurations_ = colPACSConfiguration();
    configurations_.GetPACSConfigurations();
  }

  colPACSConfiguration configurations_;
};

class AssignScenario : public Scenario {
 public:
  explicit AssignScenario(bool first) : first_(first) {}

  void start() override {
    const std::wstring numbers =
        L"WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < " +
        decimal(kWorkstations) + L") ";
    // Long names, so that no batch fits into what is left of a page.
    const std::wstring name =
        L"printf('PC-%03d" + (first_ ? std::wstring(40, L'x') : L"") + L"', i)";
    site.run(numbers + L"INSERT INTO System_pc_names SELECT " + name + L", '', 1 FROM n");
    if (!first_) {
      site.run(numbers + L"INSERT INTO System_workstation_cfg SELECT " + name +
               L", 38, 'PACSConfig', '1', -1, 0 FROM n");
    }
    connectSilently();
    workstations_.GetWorkstationsList();
    for (const auto& workstation : workstations_.ColWorkStations->items())
      workstation->configID = 2;
  }
  std::wstring memory() const override {
    std::size_t assigned = 0;
    for (const auto& workstation : workstations_.ColWorkStations->items()) {
      if (workstation->configID == 2) ++assigned;
    }
    return assigned == std::size_t{kWorkstations} ? L"assigned" : L"lost";
  }
  /// The values from the first workstation to the last, like "100 x 2, 1 x 1".
  std::wstring outline() const override {
    return *site.value(
        L"SELECT group_concat(many || ' x ' || key_value, ', ') FROM (SELECT key_value, count(*) "
        L"AS many, min(pc_name) AS first FROM (SELECT pc_name, key_value, row_number() OVER (ORDER "
        L"BY pc_name) - row_number() OVER (PARTITION BY key_value ORDER BY pc_name) AS run FROM "
        L"System_workstation_cfg) GROUP BY key_value, run ORDER BY first)");
  }

 protected:
  std::wstring act() override {
    workstations_.SaveAllWorkStationSettings();
    return L"done";
  }
  /// Each workstation is deleted and inserted; the mark comes last.
  Damage refusal(int row) const override {
    if (row > 2 * kWorkstations) return refuseMark();
    const std::wstring number = decimal((row + 1) / 2);
    const std::wstring name = L"'PC-" + std::wstring(3 - number.size(), L'0') + number + L"'";
    return row % 2 == 1 ? refuse(L"DELETE ON System_workstation_cfg", L"OLD.pc_name = " + name)
                        : refuse(L"INSERT ON System_workstation_cfg", L"NEW.pc_name = " + name);
  }

 private:
  bool first_;
  colWorkstation workstations_;
};

class ConnectionTestScenario : public Scenario {
 public:
  void start() override { connectSilently(); }
  std::wstring memory() const override {
    return modMain.g_blnSqlConnected ? L"connected" : L"not connected";
  }

 protected:
  std::wstring act() override { return truthWord(TestDatabaseConnection()); }
  int lineOfCommand(int) const override { return 0; }
};

class NumberScenario : public Scenario {
 public:
  void start() override {
    for (int i = 1; i <= 3; ++i) addConfiguration(i);
    connectSilently();
  }
  std::wstring memory() const override { return decimal(configurations_.NextConfigID); }

 protected:
  std::wstring act() override { return decimal(configurations_.GetNextConfigID()); }
  Damage unreadableRow(int row) const override {
    return spoilReading(L"Interface_PACS_cfg", L"config_id = " + decimal(row));
  }

  Damage badValue(int row) const override {
    const std::wstring id = decimal(row);
    return {{L"UPDATE Interface_PACS_cfg SET config_id = 'bad" + id + L"' WHERE config_id = " + id},
            {L"UPDATE Interface_PACS_cfg SET config_id = " + id + L" WHERE config_id = 'bad" + id +
             L"'"}};
  }

 private:
  colPACSConfiguration configurations_;
};

}  // namespace

std::unique_ptr<Scenario> loading() { return std::make_unique<LoadScenario>(); }
std::unique_ptr<Scenario> inserting() { return std::make_unique<SaveScenario>(false); }
std::unique_ptr<Scenario> updating() { return std::make_unique<SaveScenario>(true); }
std::unique_ptr<Scenario> savingThreeConfigurations() {
  return std::make_unique<SaveAllScenario>();
}
std::unique_ptr<Scenario> deleting() { return std::make_unique<DeleteScenario>(); }

std::unique_ptr<Scenario> assigning() { return std::make_unique<AssignScenario>(false); }

std::unique_ptr<Scenario> assigningFirst() { return std::make_unique<AssignScenario>(true); }

std::unique_ptr<Scenario> testingConnection() { return std::make_unique<ConnectionTestScenario>(); }
std::unique_ptr<Scenario> numbering() { return std::make_unique<NumberScenario>(); }

}  // namespace tlpacscfg::test
