#pragma once

#include <stdexcept>
#include <string>

namespace tlpacscfg::service {

/// A request that is answered with an HTTP status other than 200 and a reason for the client.
class Refusal : public std::runtime_error {
 public:
  Refusal(int status, const std::string& reason) : std::runtime_error(reason), status_(status) {}

  int status() const { return status_; }

 private:
  int status_;
};

namespace http_status {
inline constexpr int kOk = 200;
inline constexpr int kMalformed = 400;
inline constexpr int kWrongToken = 401;
inline constexpr int kForbidden = 403;
inline constexpr int kUnknownOperation = 404;
inline constexpr int kNotPost = 405;
inline constexpr int kLengthRequired = 411;
inline constexpr int kTooLarge = 413;
inline constexpr int kNotJson = 415;
/// A valid request that could not be carried out; the reason is meant for the user.
inline constexpr int kFailed = 422;
inline constexpr int kBusy = 503;
}  // namespace http_status

inline Refusal tooLarge() {
  return {http_status::kFailed, "The result is larger than the service allows."};
}

inline Refusal changesForbidden() {
  return {http_status::kForbidden, "The token does not allow changes."};
}

inline Refusal onlyPlainQueries() {
  return {http_status::kForbidden, "The token allows only queries that certainly change nothing."};
}

/// The refusal that a client receives for the exception being handled.
Refusal refusalOfCurrentException();

}  // namespace tlpacscfg::service
