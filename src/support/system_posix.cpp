#include <unistd.h>

#include <array>
#include <chrono>
#include <ctime>
#include <iostream>

#include "support/system.h"
#include "support/text.h"

namespace tlpacscfg::system {
namespace {

LocalTime systemLocalTime() {
  const auto now = std::chrono::system_clock::now();
  const auto millisecond =
      std::chrono::duration_cast<std::chrono::milliseconds>(now.time_since_epoch()).count() % 1000;
  const std::time_t seconds = std::chrono::system_clock::to_time_t(now);
  std::tm parts{};
  localtime_r(&seconds, &parts);
  return {parts.tm_year + 1900,
          parts.tm_mon + 1,
          parts.tm_mday,
          parts.tm_hour,
          parts.tm_min,
          parts.tm_sec,
          static_cast<int>(millisecond)};
}

std::wstring systemComputerName() {
  std::array<char, 256> name{};
  gethostname(name.data(), name.size() - 1);
  return std::wstring(trimBlanks(fromUtf8(name.data())));
}

Answer printMessage(const Message& message) {
  std::cerr << toUtf8(message.title) << ": " << toUtf8(message.text) << '\n';
  return message.buttons == Buttons::Ok ? Answer::Ok : Answer::No;
}

}  // namespace

std::function<LocalTime()> localTime = systemLocalTime;
std::function<std::wstring()> computerName = systemComputerName;
MessageBoxes showMessage(printMessage);
std::function<void()> processPendingMessages = [] {};

}  // namespace tlpacscfg::system
