#include "client/protocol.h"

#include <nlohmann/json.hpp>
#include <optional>
#include <string_view>
#include <utility>

#include "client/client_error.h"
#include "support/text.h"

/// Answers are read as they are parsed: the library's tree of values would take several times their
/// size, and allocates memory in its destructor, where a failure ends the program.
namespace tlpacscfg::client::protocol {
namespace {

using nlohmann::json;

constexpr std::size_t kMaxColumns = 4096;

/// Reads an object with one member and stops at the first event that does not belong to it.
class AnswerReader : public nlohmann::json_sax<json> {
 public:
  explicit AnswerReader(std::string_view member) : member_(member) {}

  bool readsAll(const std::string& answer) { return json::sax_parse(answer, this) && found_; }

  bool start_object(std::size_t) override { return depth_++ == 0; }
  bool end_object() override {
    --depth_;
    return true;
  }
  bool start_array(std::size_t) override {
    ++depth_;
    return false;
  }
  bool end_array() override {
    --depth_;
    return true;
  }
  bool key(string_t& name) override { return name == member_ && !std::exchange(found_, true); }
  bool string(string_t&) override { return false; }
  bool null() override { return false; }
  bool boolean(bool) override { return false; }
  bool number_integer(number_integer_t) override { return false; }
  bool number_unsigned(number_unsigned_t) override { return false; }
  bool number_float(number_float_t, const string_t&) override { return false; }
  bool binary(binary_t&) override { return false; }
  bool parse_error(std::size_t, const std::string&, const json::exception&) override {
    return false;
  }

 protected:
  /// The number of objects and arrays that are open.
  int depth() const { return depth_; }

 private:
  const std::string_view member_;
  bool found_ = false;
  int depth_ = 0;
};

/// {"error": "reason"}
class RefusalReader : public AnswerReader {
 public:
  RefusalReader() : AnswerReader("error") {}

  bool string(string_t& text) override {
    reason = fromUtf8(text);
    return true;
  }

  std::wstring reason;
};

/// {"files": ["a.xml"]}
class FilesReader : public AnswerReader {
 public:
  FilesReader() : AnswerReader("files") {}

  bool start_array(std::size_t size) override {
    AnswerReader::start_array(size);
    return depth() == 2;
  }
  bool string(string_t& name) override {
    if (depth() != 2) return false;
    files.push_back(fromUtf8(name));
    return true;
  }

  std::vector<std::wstring> files;
};

/// {"tables": [{"columns": 2, "rows": [["a", null]]}]}
class TablesReader : public AnswerReader {
 public:
  TablesReader() : AnswerReader("tables") {}

  bool start_object(std::size_t size) override {
    if (AnswerReader::start_object(size)) return true;
    expected_ = "columns";
    return depth() == kTable;
  }
  bool end_object() override {
    AnswerReader::end_object();
    return depth() != kTable - 1 || expected_.empty();
  }
  bool key(string_t& name) override {
    return depth() == kTable ? name == expected_ : AnswerReader::key(name);
  }
  bool number_unsigned(number_unsigned_t number) override {
    if (depth() != kTable || expected_ != "columns" || number < 1 || number > kMaxColumns) {
      return false;
    }
    columns_ = static_cast<std::size_t>(number);
    tables.emplace_back(columns_);
    expected_ = "rows";
    return true;
  }
  bool start_array(std::size_t size) override {
    AnswerReader::start_array(size);
    cells_ = 0;
    if (depth() == kRows) return std::exchange(expected_, "") == "rows";
    return depth() == kTables || depth() == kRow;
  }
  bool end_array() override {
    const bool complete = depth() != kRow || cells_ == columns_;
    return AnswerReader::end_array() && complete;
  }
  bool string(string_t& text) override { return append(fromUtf8(text)); }
  bool null() override { return append(std::nullopt); }

  std::vector<Table> tables;

 private:
  enum Depth { kTables = 2, kTable = 3, kRows = 4, kRow = 5 };

  bool append(const std::optional<std::wstring>& cell) {
    if (depth() != kRow || cells_++ == columns_) return false;
    tables.back().append(cell ? Cell(*cell) : std::nullopt);
    return true;
  }

  /// The next member of the table; empty after the last one.
  std::string_view expected_;
  std::size_t columns_ = 0;
  std::size_t cells_ = 0;
};

[[noreturn]] void notUnderstood() { throw ClientError(L"The service's answer makes no sense."); }

std::string quoted(const std::wstring& text) { return json(toUtf8(text)).dump(); }

}  // namespace

std::string requestOf(const std::wstring& token, std::initializer_list<Member> members) {
  std::string request = "{\"token\":" + quoted(token);
  for (const auto& [name, value] : members) {
    const auto* const text = std::get_if<std::wstring>(&value);
    request += std::string(",\"") + name + "\":";
    request += text ? quoted(*text) : std::get<bool>(value) ? "true" : "false";
  }
  return request + "}";
}

std::wstring refusalIn(const std::string& answer, unsigned status) {
  RefusalReader reader;
  if (reader.readsAll(answer)) return reader.reason;
  return L"The service refused the request (status " + decimal(status) + L").";
}

std::vector<Table> tablesIn(const std::string& answer) {
  TablesReader reader;
  if (!reader.readsAll(answer)) notUnderstood();
  return std::move(reader.tables);
}

std::vector<std::wstring> filesIn(const std::string& answer) {
  FilesReader reader;
  if (!reader.readsAll(answer)) notUnderstood();
  return std::move(reader.files);
}

}  // namespace tlpacscfg::client::protocol
