#include "service/json_text.h"

#include <nlohmann/json.hpp>

#include "service/refusal.h"

namespace tlpacscfg::service {

using nlohmann::json;

std::string quoted(std::string text) {
  return json(std::move(text)).dump(-1, ' ', false, json::error_handler_t::replace);
}

BoundedText& BoundedText::operator+=(std::string_view piece) {
  if (text_.size() + piece.size() > limit_) throw tooLarge();
  text_ += piece;
  return *this;
}

}  // namespace tlpacscfg::service
