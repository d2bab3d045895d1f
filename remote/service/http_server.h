#pragma once

#include <httplib.h>

#include <atomic>
#include <memory>
#include <string>
#include <utility>

#include "service/connection.h"
#include "service/credentials.h"
#include "service/job_process.h"
#include "service/metrics.h"
#include "service/options.h"

namespace tlpacscfg::service {

class Channel;

/// Answers the one request of each connection and writes a line about it into the journal.
/// Thread-safe.
class HttpServer : private httplib::Server {
 public:
  /// `stopSignal` becomes readable when the service is to end. Throws OptionError.
  HttpServer(const ServiceOptions& options, int stopSignal);

  TokenCheck serve(Connection& connection);

  Metrics& metrics() { return metrics_; }

  /// For the connections that follow; thread-safe.
  void use(std::shared_ptr<const Credentials> credentials) {
    credentials_ = std::move(credentials);
  }

 private:
  struct Exchange;

  HandlerResponse refuseEarly(const httplib::Request& request, httplib::Response& response) const;
  void answer(const httplib::Request& request, httplib::Response& response) const;
  std::string answerOf(const httplib::Request& request) const;
  template <class Setup>
  void processRequest(Channel& channel, Setup setup);

  const ServiceOptions& options_;
  const int stopSignal_;
  mutable JobProcesses jobs_;
  Metrics metrics_;
  std::atomic<std::shared_ptr<const Credentials>> credentials_;
};

}  // namespace tlpacscfg::service
