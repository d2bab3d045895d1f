#pragma once

#include <httplib.h>

#include <atomic>
#include <memory>
#include <string>

#include "service/credentials.h"
#include "service/descriptor.h"
#include "service/operations.h"
#include "service/options.h"

namespace tlpacscfg::service {

/// The HTTP server. Each connection is one request and one line in the journal.
class Listener : public httplib::Server {
 public:
  /// `stopSignal` becomes readable when the service is to end. Throws OptionError.
  Listener(const ServiceOptions& options, int stopSignal);

  /// Listens until stop() is called. False when the address cannot be listened on.
  bool serve();

  /// For the connections that follow; thread-safe.
  void use(std::shared_ptr<const Credentials> credentials) { credentials_ = credentials; }

 private:
  struct Exchange;

  bool process_and_close_socket(socket_t socket) override;
  bool serveConnection(Descriptor socket);
  HandlerResponse refuseEarly(const httplib::Request& request, httplib::Response& response) const;
  void answer(const httplib::Request& request, httplib::Response& response) const;
  std::string answerOf(const httplib::Request& request) const;
  bool stopping() const;
  bool bind(int& port);

  const ServiceOptions& options_;
  const int stopSignal_;
  std::atomic<std::shared_ptr<const Credentials>> credentials_;
};

}  // namespace tlpacscfg::service
