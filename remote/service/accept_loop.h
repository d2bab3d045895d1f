#pragma once

#include <poll.h>

#include <vector>

#include "service/admission.h"
#include "service/descriptor.h"
#include "service/http_server.h"
#include "service/options.h"
#include "service/dropped_connections.h"
#include "service/workers.h"

namespace tlpacscfg::service {

/// Accepts connections, waits for their first bytes, and has them served by workers. A connection
/// that is silent takes a place, but no worker.
class AcceptLoop {
 public:
  AcceptLoop(Descriptor listening, const ServiceOptions& options, HttpServer& server);

  /// Returns when `stopSignal` is readable, without the connections that have no worker. The
  /// destructor waits for those that have.
  void run(int stopSignal);

 private:
  bool turn(int stopSignal);
  void awaitEvents(int stopSignal);
  int millisecondsToNextChange(Clock::time_point now) const;
  void readConnections();
  void acceptConnections();
  void serveConnections();
  void drop(const Connection& connection, const char* reason);

  Metrics& metrics_;
  Descriptor listening_;
  Workers workers_;
  Admission admission_;
  DroppedConnections dropped_;
  std::vector<pollfd> polled_;
  Clock::time_point acceptAgain_;
};

}  // namespace tlpacscfg::service
