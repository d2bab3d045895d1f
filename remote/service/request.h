#pragma once

#include <map>
#include <string>
#include <string_view>

namespace tlpacscfg::service {

/// The body of a request: one flat JSON object of texts and truth values. A member that is missing
/// or of another type throws Refusal.
class Request {
 public:
  explicit Request(std::string_view json);

  const std::string& utf8(const std::string& name) const;
  std::wstring text(const std::string& name) const;
  bool truth(const std::string& name) const;

 private:
  std::map<std::string, std::string> texts_;
  std::map<std::string, bool> truths_;
};

}  // namespace tlpacscfg::service
