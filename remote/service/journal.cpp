#include "service/journal.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <mutex>
#include <string_view>

namespace tlpacscfg::service {
namespace {

bool isPlain(char c) { return c > ' ' && c < '\x7f' && c != '"' && c != '=' && c != '\\'; }

std::string shown(std::string_view value) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  if (!value.empty() && std::all_of(value.begin(), value.end(), isPlain)) {
    return std::string(value);
  }
  std::string text = "\"";
  for (const char c : value) {
    const auto code = static_cast<unsigned char>(c);
    if (code < ' ' || code == 0x7f) {
      text += {'\\', 'x', kDigits[code >> 4], kDigits[code & 15]};
      continue;
    }
    if (c == '"' || c == '\\') text += '\\';
    text += c;
  }
  return text + "\"";
}

}  // namespace

std::string journalText(const char* event, const JournalFields& fields) {
  std::string text = std::string("event=") + event;
  for (const auto& [name, value] : fields) {
    ((text += ' ') += name) += '=';
    text += shown(value);
  }
  return text;
}

void writeJournal(const char* event, const JournalFields& fields) {
  static std::mutex mutex;
  const std::string text = journalText(event, fields);
  const std::time_t now = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
  std::tm parts{};
  gmtime_r(&now, &parts);
  char time[32];
  std::strftime(time, sizeof(time), "%Y-%m-%dT%H:%M:%SZ", &parts);
  const std::scoped_lock lock(mutex);
  // A journal that cannot be written must not stop the service.
  std::fprintf(stdout, "time=%s %s\n", time, text.c_str());
  std::fflush(stdout);
}

}  // namespace tlpacscfg::service
