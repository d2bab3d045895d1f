#include "cli/formats/configuration_text.h"

#include <algorithm>
#include <bitset>
#include <nlohmann/json.hpp>
#include <optional>

#include "cli/base/failure.h"
#include "cli/formats/fields.h"
#include "config/columns.h"
#include "support/runtime_error.h"
#include "support/text.h"
#include "support/trimmed_line.h"

namespace tlpacscfg::cli {
namespace {

bool isControl(char letter) { return static_cast<unsigned char>(letter) < 0x20 || letter == 0x7F; }

bool wouldBeMisread(const std::string& text) {
  return text.starts_with('"') || text.starts_with(' ') || text.ends_with(' ') ||
         std::ranges::any_of(text, isControl);
}

/// Throws Failure.
std::string unquoted(std::string_view value) {
  if (!value.starts_with('"')) return std::string(value);
  const auto text = nlohmann::ordered_json::parse(value, nullptr, false);
  if (!text.is_string()) throw Failure(ExitCode::Usage, "the quoted text is not a JSON string");
  return text.get<std::string>();
}

/// The values of records differ from those of other systems only in the last change.
bool mayBeMissing(const Column& column) { return column.onUpdate != Source::Record; }

class TextReader {
 public:
  ConfigurationText read(std::string_view text) {
    for (std::size_t line = 1; !text.empty(); ++line) {
      const std::size_t end = std::min(text.find('\n'), text.size());
      readLine(line, trimmedLine(text.substr(0, end)));
      text.remove_prefix(std::min(end + 1, text.size()));
    }
    for (std::size_t i = 0; i < kColumnCount; ++i) {
      if (found_[i] || mayBeMissing(columns()[i])) continue;
      note(0, "the field " + toUtf8(columns()[i].property) + " is missing");
    }
    return std::move(result_);
  }

 private:
  void note(std::size_t line, const std::string& message) {
    result_.errors.push_back({line, message});
  }

  void readLine(std::size_t number, std::string_view line) {
    if (line.empty() || line.starts_with('#')) return;
    const std::size_t equals = line.find('=');
    if (equals == line.npos) return note(number, "this is not FIELD = VALUE");
    try {
      const Column& column = columnNamed(trimmedLine(line.substr(0, equals)));
      const auto place = static_cast<std::size_t>(&column - columns().data());
      if (found_[place]) {
        return note(number, "the field " + toUtf8(column.property) + " is there twice");
      }
      found_.set(place);
      setValue(result_.record, column.field,
               valueIn(column, unquoted(trimmedLine(line.substr(equals + 1)))));
    } catch (const Failure& failure) {
      note(number, failure.what());
    }
  }

  ConfigurationText result_;
  std::bitset<kColumnCount> found_;
};

}  // namespace

std::string textOf(const clsPACSConfiguration& record) {
  std::string text;
  for (const Column& column : columns()) {
    std::string value = wordsOf(column, record);
    if (wouldBeMisread(value)) value = nlohmann::ordered_json(value).dump();
    text += toUtf8(column.property) + (value.empty() ? " =" : " = ") + value + "\n";
  }
  return text;
}

ConfigurationText readConfigurationText(std::string_view text) { return TextReader().read(text); }

}  // namespace tlpacscfg::cli
