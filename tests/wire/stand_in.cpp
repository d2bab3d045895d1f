#include "wire/stand_in.h"

#include "support/text.h"
#include "harness/probe.h"

namespace tlpacscfg::test {
namespace {

ProbeRows told(const std::string& command, const std::string& arguments) {
  const Probe line(L"Driver={SQL Server};Server=127.0.0.2;UID=test;PWD=test;");
  const std::string members = arguments.empty() ? "" : "," + arguments;
  std::string literal;
  for (const char byte : R"({"command":")" + command + '"' + members + '}') {
    literal += byte;
    if (byte == '\'') literal += byte;
  }
  return line.rows(L"TELL '" + fromUtf8(literal) + L"'");
}

}  // namespace

std::string json(const std::wstring& text) {
  std::string quoted = "\"";
  for (const char byte : toUtf8(text)) {
    switch (byte) {
      case '\r':
        quoted += "\\r";
        break;
      case '\n':
        quoted += "\\n";
        break;
      case '"':
      case '\\':
        quoted += '\\';
        [[fallthrough]];
      default:
        quoted += byte;
    }
  }
  return quoted + '"';
}

std::string joined(const std::vector<std::string>& items) {
  std::string list;
  for (const std::string& item : items) list += (list.empty() ? "" : ",") + item;
  return "[" + list + "]";
}

void tellStandIn(const std::string& command, const std::string& arguments) {
  told(command, arguments);
}

int askStandIn(const std::string& command) { return std::stoi(*told(command, "").at(0).at(0)); }

}  // namespace tlpacscfg::test
