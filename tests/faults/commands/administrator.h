#pragma once

#include <deque>
#include <memory>
#include <string>
#include <vector>

#include "support/system.h"
#include "ui/settings/editor/settings_editor.h"

namespace tlpacscfg::test {

/// What the windows do to a site.
enum class Command { SaveNew, SaveChanged, Delete, Assign };
inline constexpr Command kCommands[] = {Command::SaveNew, Command::SaveChanged, Command::Delete,
                                        Command::Assign};

const char* nameOf(Command command);

/// Works on a site as the windows do, through an object of his own that Init connected. Whatever
/// asks him gets the safe answer, but for the question before a deletion.
class Administrator {
 public:
  explicit Administrator(const HostSettings& settings);
  ~Administrator();
  Administrator(const Administrator&) = delete;
  Administrator& operator=(const Administrator&) = delete;

  /// Opens the window and enters what the command is to store.
  void prepare(Command command);
  /// Empty, or "number: description" of the error.
  std::wstring give();
  /// What he entered, and what the window and the host hold. Not which row is selected: after a
  /// deletion, which fails or not, that is the first one.
  std::wstring view() const;

  /// The boxes since the last call, but for the question before a deletion and the error after it.
  std::vector<std::wstring> takeQuestions() { return std::exchange(questions_, {}); }
  /// The next questions get Yes, No for an administrator who gives way.
  std::deque<system::Answer> answers;

  /// How many workstations the last save has reported; the commands had so many in all.
  std::size_t progress = 0;

  const std::shared_ptr<clsConfig> host = std::make_shared<clsConfig>();

 private:
  void open(std::int16_t configID);
  void settle();
  void act();
  system::Answer answer(const system::Message& message);

  Command command_ = Command::SaveNew;
  SettingsEditor editor_{host, {}};
  std::vector<std::wstring> questions_;
  std::wstring failure_;
};

}  // namespace tlpacscfg::test
