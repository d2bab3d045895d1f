#pragma once

#include <functional>
#include <string>
#include <utility>

namespace tlpacscfg {
class RunTimeError;
}

/// Clock, computer name, message boxes and message loop of the system, as functions that tests
/// replace.
namespace tlpacscfg::system {

struct LocalTime {
  int year, month, day, hour, minute, second, millisecond;
};

enum class Buttons { Ok, YesNo, YesNoCancel };
enum class Icon { None, Critical };
enum class Modality { System, Application };
enum class Answer { Ok, Yes, No, Cancel };

struct Message {
  std::wstring text;
  Buttons buttons = Buttons::Ok;
  Answer defaultAnswer = Answer::Yes;  ///< For questions.
  Icon icon = Icon::None;
  Modality modality = Modality::System;
  std::wstring title = L"TLPACSCFG";
};

extern std::function<LocalTime()> localTime;

/// The name of this computer, trimmed.
extern std::function<std::wstring()> computerName;

/// A replaceable function that shows a message box and returns the answer; counts the open ones.
class MessageBoxes {
 public:
  using Box = std::function<Answer(const Message&)>;

  template <class Function>
  MessageBoxes(Function box) : box_(std::move(box)) {}

  Answer operator()(const Message& message) const;

  /// Whether a message box is open, and with it the code that called it.
  bool anyOpen() const { return open_ > 0; }

 private:
  Box box_;
  mutable int open_ = 0;
};

extern MessageBoxes showMessage;

/// The default report of an error that no procedure handles.
void reportRunTimeError(const RunTimeError& error);

/// Processes the messages that wait in the thread's queue.
extern std::function<void()> processPendingMessages;

}  // namespace tlpacscfg::system
