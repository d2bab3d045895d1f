#include "faults/commands/administrator.h"

#include <gtest/gtest.h>

#include "support/runtime_error.h"
#include "support/text.h"
#include "workstation/assignments.h"

namespace tlpacscfg::test {
namespace {

constexpr const wchar_t* kSure = L"Are you sure you want to delete this configuration?";
constexpr const wchar_t* kNotDeleted = L"Error Deleting configID = 5 from the DB. ";
constexpr std::int16_t kEdited = 5;

}  // namespace

const char* nameOf(Command command) {
  switch (command) {
    case Command::SaveNew:
      return "save new";
    case Command::SaveChanged:
      return "save changed";
    case Command::Delete:
      return "delete";
    case Command::Assign:
      return "assign";
  }
  return "?";
}

Administrator::Administrator(const HostSettings& settings) {
  *host->settings = settings;
  system::showMessage = [this](const system::Message& message) { return answer(message); };
  if (!host->Init()) throw std::runtime_error("Init failed.");
}

Administrator::~Administrator() {
  system::showMessage = [](const system::Message&) { return system::Answer::Cancel; };
}

system::Answer Administrator::answer(const system::Message& message) {
  if (message.text == kSure) return system::Answer::Yes;
  if (message.text.starts_with(kNotDeleted)) {
    failure_ = message.text.substr(std::wstring(kNotDeleted).size());
    return system::Answer::Ok;
  }
  questions_.push_back(message.text);
  if (message.buttons == system::Buttons::Ok) return system::Answer::Ok;
  if (answers.empty()) return message.defaultAnswer;
  const system::Answer chosen = answers.front();
  answers.pop_front();
  return chosen;
}

void Administrator::prepare(Command command) {
  command_ = command;
  switch (command) {
    case Command::SaveNew:
      open(1);
      editor_.btnNew();
      settle();
      editor_.form[Control::txtDescription].text = L"Mine";
      break;
    case Command::SaveChanged:
      open(kEdited);
      editor_.form[Control::txtDescription].text = L"Mine";
      break;
    case Command::Delete:
      open(kEdited);
      break;
    case Command::Assign:
      for (const auto& workstation : host->m_colWorkstation->ColWorkStations->items()) {
        const bool even = (workstation->WorkStation.back() - L'0') % 2 == 0;
        if (even) workstation->configID = kEdited;
      }
      break;
  }
  questions_.clear();
}

void Administrator::open(std::int16_t configID) {
  editor_.load();
  editor_.ShowPACSSettings(configID);
  settle();
}

void Administrator::settle() {
  if (editor_.rulesWanted) editor_.TmrFieldChange();
  editor_.rulesWanted = false;
}

std::wstring Administrator::give() {
  failure_.clear();
  try {
    act();
    return failure_;
  } catch (const RunTimeError& error) {
    return decimal(error.number()) + L": " + error.description();
  }
}

void Administrator::act() {
  if (command_ == Command::Delete) {
    const auto row = editor_.rows.rowOfKey(ConfigurationRows::keyOf(kEdited));
    if (row) editor_.rowClicked(*row);
    if (row) editor_.btnDelete();
    return;
  }
  if (command_ != Command::Assign) return editor_.btnSave();
  const SiteAccess access(*host);
  progress = 0;
  const auto conflicts = saveAssignments(
      *host->m_colWorkstation, {}, [this](std::size_t done, std::size_t) { progress = done; });
  for (const AssignmentConflict& conflict : conflicts) {
    questions_.push_back(conflict.workstation + L": " + conflict.theirs);
  }
}

std::wstring Administrator::view() const {
  std::wstring text;
  if (command_ == Command::Assign) {
    for (const auto& workstation : host->m_colWorkstation->ColWorkStations->items()) {
      text += workstation->WorkStation + L"=" + decimal(workstation->configID) + L"(" +
              decimal(workstation->storedConfigID.value_or(-1)) + L") ";
    }
    return text;
  }
  if (command_ != Command::Delete) {
    text = editor_.form[Control::txtDescription].text + (editor_.isNew() ? L" new\n" : L"\n");
  }
  for (std::size_t row = 0; row < editor_.rows.rowCount(); ++row) {
    text += std::wstring(editor_.rows.cell(row, ConfigurationRows::kConfiguration)) + L"\n";
  }
  for (const auto& record : host->m_colPACSConfig->ColPACSConfigs->items()) {
    text += decimal(record->configID) + L" " + record->Description + L" by " +
            record->LastUpdateUserID + L"\n";
  }
  return text;
}

}  // namespace tlpacscfg::test
