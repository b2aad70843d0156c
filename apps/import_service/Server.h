#pragma once

#include "import_service/ImportService.h"
#include "import_service/Limits.h"

#include <memory>
#include <string>

namespace imex::import_service {

/// The service on HTTP: POST to the two addresses, GET of /health. Another method at these is answered with 405, any
/// other path with 404, a body in a content encoding with 415. It serves on threads of its own from start() to stop().
class Server {
 public:
  /// The service must outlive the server.
  explicit Server(ImportService& service, const Limits& limits = {});

  /// Stops.
  ~Server();

  /// Listens at a host name or address; port 0 takes one that is free. The server answers when the call returns. A
  /// StartError (unavailable) where the address cannot be listened at. Called once.
  void start(const std::string& host, int port);

  /// "http://127.0.0.1:41234", after start().
  const std::string& url() const;

  /// Takes no new requests, waits until those at work are answered or have run out of their time, and returns. A second
  /// call does nothing.
  void stop();

 private:
  struct Http;

  std::unique_ptr<Http> m_http;
};

} // namespace imex::import_service
