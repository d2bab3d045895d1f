#pragma once

#include <functional>
#include <string>
#include <utility>

/// What the system provides: clock, computer name, message boxes and the message loop. Each is a
/// function that tests may replace.
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
  Answer defaultAnswer = Answer::Yes;  ///< Of a question.
  Icon icon = Icon::None;
  Modality modality = Modality::System;
  std::wstring title = L"TLPACSCFG";
};

extern std::function<LocalTime()> localTime;

/// The name of this computer, without blanks around it.
extern std::function<std::wstring()> computerName;

/// Shows a message box and waits for the answer, as a replaceable function does it.
class MessageBoxes {
 public:
  using Box = std::function<Answer(const Message&)>;

  template <class Function>
  MessageBoxes(Function box) : box_(std::move(box)) {}

  Answer operator()(const Message& message) const;

  /// While one waits, code below it on the stack waits too.
  bool anyOpen() const { return open_ > 0; }

 private:
  Box box_;
  mutable int open_ = 0;
};

extern MessageBoxes showMessage;

/// Lets the messages that wait for the host's user interface be processed once.
extern std::function<void()> processPendingMessages;

}  // namespace tlpacscfg::system
