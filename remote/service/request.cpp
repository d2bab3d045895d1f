#include "service/request.h"

#include <nlohmann/json.hpp>

#include "service/refusal.h"
#include "support/text.h"

namespace tlpacscfg::service {
namespace {

using nlohmann::json;

constexpr std::size_t kMaxMembers = 16;

/// Receives the events of the parser and stops it at the first one that does not belong to a flat
/// object, so that nested input needs no memory.
class FlatObjectReader : public nlohmann::json_sax<json> {
 public:
  FlatObjectReader(std::map<std::string, std::string>& texts, std::map<std::string, bool>& truths)
      : texts_(texts), truths_(truths) {}

  bool start_object(std::size_t) override { return !std::exchange(inside_, true); }
  bool end_object() override { return true; }
  bool key(string_t& name) override {
    key_ = name;
    return texts_.size() + truths_.size() < kMaxMembers && !texts_.contains(name) &&
           !truths_.contains(name);
  }
  bool string(string_t& value) override {
    if (!inside_ || value.find('\0') != value.npos) return false;
    texts_[key_] = std::move(value);
    return true;
  }
  bool boolean(bool value) override {
    if (!inside_) return false;
    truths_[key_] = value;
    return true;
  }

  bool null() override { return false; }
  bool number_integer(number_integer_t) override { return false; }
  bool number_unsigned(number_unsigned_t) override { return false; }
  bool number_float(number_float_t, const string_t&) override { return false; }
  bool binary(binary_t&) override { return false; }
  bool start_array(std::size_t) override { return false; }
  bool end_array() override { return false; }
  bool parse_error(std::size_t, const std::string&, const json::exception&) override {
    return false;
  }

 private:
  std::map<std::string, std::string>& texts_;
  std::map<std::string, bool>& truths_;
  std::string key_;
  bool inside_ = false;
};

template <class Value>
const Value& required(const std::map<std::string, Value>& values, const std::string& name) {
  const auto found = values.find(name);
  if (found == values.end()) {
    throw Refusal(http_status::kMalformed, "The request lacks '" + name + "'.");
  }
  return found->second;
}

}  // namespace

Request::Request(std::string_view text) {
  FlatObjectReader reader(texts_, truths_);
  if (!json::sax_parse(text, &reader)) {
    throw Refusal(http_status::kMalformed, "The request is not an object of texts.");
  }
}

const std::string& Request::utf8(const std::string& name) const { return required(texts_, name); }

std::wstring Request::text(const std::string& name) const { return fromUtf8(utf8(name)); }

bool Request::truth(const std::string& name) const { return required(truths_, name); }

}  // namespace tlpacscfg::service
