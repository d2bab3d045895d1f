#pragma once

#include <string>
#include <utility>
#include <vector>

#include "tools/core_test.h"
#include "tools/probe.h"

namespace tlpacscfg::test {

using WireColumns = std::vector<std::pair<std::string, std::string>>;  ///< Name and type.

enum class AfterRows { Answers, HangsUp };
enum class AfterFailure { KeepsTransaction, UndoesTransaction };

/// The component on the SQL Server driver, and a stand-in for the server at the other end that
/// says what the test tells it to and keeps a record of what it is told.
class WireTest : public CoreTest {
 protected:
  WireTest();

  HostSettings config;

  void connect();

  /// Takes effect with the next connection.
  void stallLogin();
  void hangUpAtLogin();
  void acceptLogin();
  void refuseLogin(int number, const std::wstring& text);
  /// The rows for every batch that begins with the text.
  void answer(const std::wstring& to, const WireColumns& columns, const ProbeRows& rows,
              AfterRows afterRows = AfterRows::Answers);
  /// The failure of one statement, counted from 1, of every batch that begins with the text.
  void fail(const std::wstring& to, int statement, int number, const std::wstring& text,
            AfterFailure afterFailure = AfterFailure::KeepsTransaction);
  /// No answer to any batch that begins with the text, until the driver takes it back.
  void stall(const std::wstring& to);
  void answerTestStatement();

  /// What the server was told, one line for each event.
  std::vector<std::string> record() const;
  /// The lines since the last call.
  std::vector<std::string> newRecord();

  static std::string login(const std::wstring& user, const std::wstring& password,
                           const std::wstring& database);
  static std::string batch(const std::wstring& text);
  static std::string takenBack();
  static std::string transaction(const std::string& event);

 private:
  void writeScript() const;

  std::string login_ = "null";
  std::vector<std::string> answers_;
  std::size_t seen_ = 0;
};

}  // namespace tlpacscfg::test
