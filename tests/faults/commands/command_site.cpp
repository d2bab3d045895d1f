#include "faults/commands/command_site.h"

#include <gtest/gtest.h>

#include <cctype>

#include "support/text.h"

namespace tlpacscfg::test {
namespace {

/// A row that the settings window shows as it is stored.
std::wstring configuration(int id, const std::wstring& description) {
  return L"INSERT INTO Interface_PACS_cfg VALUES(" + decimal(id) + L", 0, '" + description +
         L"', '', '', 0, 0, 0, 0, 0, 0, 0, 1, 0, 1, '2012-10-24 14:05:09', '', '', 0, 0, 0, 0, 0, "
         L"0, 0, 0, 11, 0, '', '', 0, 0, 0, 0, 0, '', 0, 0)";
}

std::wstring names(int count) {
  return L"WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < " +
         decimal(count) + L")";
}

}  // namespace

std::vector<std::wstring> contentFor(Command command) {
  const std::wstring all = names(command == Command::Assign ? kWorkstations : 2);
  const std::wstring name = L"printf('PC-%03d', i)";
  return {configuration(1, L"Default"), configuration(5, L"Five"), configuration(9, L"Nine"),
          all + L" INSERT INTO System_pc_names SELECT " + name + L", '', 1 FROM n",
          all + L" INSERT INTO System_workstation_cfg SELECT " + name +
              L", 38, 'PACSConfig', '1', -1, 0 FROM n"};
}

std::wstring oursQuestion(Command command) {
  const std::wstring count = L"SELECT count(*) FROM Interface_PACS_cfg WHERE ";
  switch (command) {
    case Command::SaveNew:
      return count + L"description = 'Mine'";
    case Command::SaveChanged:
      return count + L"description = 'Mine' AND config_id = 5";
    case Command::Delete:
      return L"SELECT count(*) = 0 FROM Interface_PACS_cfg WHERE config_id = 5";
    case Command::Assign:
      break;
  }
  return L"SELECT count(*) / 124 FROM System_workstation_cfg WHERE key_value = '5'";
}

std::vector<std::wstring> clearing() {
  return {L"DELETE FROM Interface_PACS_cfg", L"DELETE FROM System_pc_names",
          L"DELETE FROM System_workstation_cfg", L"DELETE FROM System_offline_db_updates"};
}

const std::vector<Rival>& rivals() {
  const auto assign = [](const std::wstring& name, const std::wstring& id) {
    return L"UPDATE System_workstation_cfg SET key_value = '" + id + L"' WHERE pc_name = '" + name +
           L"'";
  };
  const auto assigned = [](const std::wstring& name, const std::wstring& id) {
    return L"SELECT count(*) FROM System_workstation_cfg WHERE pc_name = '" + name +
           L"' AND key_value = '" + id + L"'";
  };
  const std::wstring number = configuration(10, L"Theirs");
  // The commands write this column too.
  const std::wstring change =
      L"UPDATE Interface_PACS_cfg SET request_filename = 'Theirs', last_user_id = 12 WHERE "
      L"config_id = 5";
  const std::wstring changed =
      L"SELECT count(*) FROM Interface_PACS_cfg WHERE config_id = 5 AND request_filename = "
      L"'Theirs'";
  static const std::vector<Rival> all = {
      {"takes the number", Command::SaveNew, L"INSERT OR IGNORE" + number.substr(6),
       L"SELECT count(*) FROM Interface_PACS_cfg WHERE config_id = 10 AND description = 'Theirs'"},
      {"changes the row", Command::SaveChanged, change, changed},
      {"deletes the row", Command::SaveChanged,
       L"DELETE FROM Interface_PACS_cfg WHERE config_id = 5",
       L"SELECT count(*) = 0 FROM Interface_PACS_cfg WHERE config_id = 5"},
      {"changes the row", Command::Delete, change, changed},
      {"assigns the configuration", Command::Delete, assign(L"PC-001", L"5"),
       assigned(L"PC-001", L"5")},
      {"reassigns the same workstation", Command::Assign, assign(L"PC-002", L"9"),
       assigned(L"PC-002", L"9")},
      {"reassigns another workstation", Command::Assign, assign(L"PC-001", L"9"),
       assigned(L"PC-001", L"9")},
      {"reassigns a workstation of the last batch", Command::Assign, assign(L"PC-249", L"9"),
       assigned(L"PC-249", L"9")},
  };
  return all;
}

std::vector<std::wstring> statementsOf(const Rival& rival) {
  return {rival.change, L"INSERT INTO System_pc_names SELECT 'FOUND', changes(), 1"};
}

std::wstring meetingQuestion(const Rival& rival) {
  return L"SELECT (SELECT group_concat(access_string) FROM System_pc_names WHERE pc_name = "
         L"'FOUND'), (" +
         rival.check + L"), (" + oursQuestion(rival.command) +
         L"), (SELECT count(*) FROM System_offline_db_updates)";
}

char letterOf(const Rival& rival, const Meeting& meeting) {
  const std::wstring found = meeting.answer[0].value_or(L"nothing");
  const bool theirs = meeting.answer[1] == L"1";
  const std::wstring ours = meeting.answer[2].value_or(L"nothing");
  const std::wstring marks = meeting.answer[3].value_or(L"nothing");
  EXPECT_EQ(toUtf8(meeting.error), "");
  if (found == L"1" && theirs && meeting.asked) {
    // Deleted by him and by nobody else, the row counts as gone in both questions.
    EXPECT_EQ(ours, L"0");
    EXPECT_EQ(marks, L"0");
    return kAsked;
  }
  EXPECT_FALSE(meeting.asked);
  EXPECT_EQ(marks, L"1");
  if (found == L"0" && !theirs && ours == L"1") return kFirst;
  EXPECT_TRUE(theirs) << "His change is lost.";
  EXPECT_EQ(found, L"1") << "His change was never made.";
  const bool isGone = rival.check.find(L"= 0") != rival.check.npos;
  EXPECT_EQ(ours, isGone ? L"0" : L"1");
  if (!theirs || found != L"1") return kWrong;
  return kBoth;
}

Stored storedIn(const std::function<ProbeRows(const std::wstring&)>& read) {
  Stored stored;
  for (const wchar_t* const table :
       {L"Interface_PACS_cfg ORDER BY config_id", L"System_workstation_cfg ORDER BY pc_name",
        L"System_pc_names ORDER BY pc_name"}) {
    stored.rows += asText(read(L"SELECT * FROM " + std::wstring(table)));
  }
  const ProbeRows marks =
      read(L"SELECT count(*) FROM System_offline_db_updates WHERE user_id = -1");
  stored.marks = std::stoi(*marks.at(0).at(0));
  return stored;
}

char letterOf(const Ending& ending, const std::wstring& done) {
  const bool failed = !ending.error.empty();
  const int newMarks = ending.now.marks - ending.before.marks;
  if (ending.now.rows == done && newMarks == 1) {
    if (!failed) return kDone;
    EXPECT_NE(ending.error.find(L"It may have saved the change."), std::wstring::npos)
        << toUtf8(ending.error);
    EXPECT_EQ(toUtf8(ending.viewNow), toUtf8(ending.viewBefore)) << "The edits are lost.";
    return kUnconfirmed;
  }
  EXPECT_EQ(toUtf8(ending.now.rows), toUtf8(ending.before.rows)) << "Neither old nor new.";
  EXPECT_EQ(newMarks, 0);
  EXPECT_TRUE(failed) << "Nothing was stored, and no error was shown.";
  EXPECT_EQ(toUtf8(ending.viewNow), toUtf8(ending.viewBefore)) << "The edits are lost.";
  const bool old = ending.now.rows == ending.before.rows && newMarks == 0 && failed;
  return old && ending.viewNow == ending.viewBefore ? kUndone : kWrong;
}

std::string inOneWord(const std::string& text) {
  std::string word;
  bool begins = true;
  for (const char letter : text) {
    const bool kept = std::isalnum(static_cast<unsigned char>(letter)) != 0;
    if (kept) word += begins ? static_cast<char>(std::toupper(letter)) : letter;
    begins = !kept;
  }
  return word;
}

}  // namespace tlpacscfg::test
