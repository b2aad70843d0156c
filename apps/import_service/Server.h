#pragma once

#include "import_service/ImportService.h"

#include <cstddef>
#include <memory>
#include <string>

namespace imex::import_service {

/// A longer body is answered with the status 413 and not kept: 256 MiB.
inline constexpr std::size_t kGreatestBody = 256UL * 1024 * 1024;

/// The service on HTTP: POST to the two addresses, GET of /health. Another method at these is answered with 405, any
/// other path with 404. It serves on threads of its own from start() to stop().
class Server {
 public:
  /// The service must outlive the server.
  explicit Server(ImportService& service, std::size_t greatestBody = kGreatestBody);

  /// Stops.
  ~Server();

  /// Listens at a host name or address; port 0 takes one that is free. The server answers when the call returns. A
  /// StartError (unavailable) where the address cannot be listened at. Called once.
  void start(const std::string& host, int port);

  /// "http://127.0.0.1:41234", after start().
  const std::string& url() const;

  /// Takes no new requests, waits until those at work are answered, and returns. A second call does nothing.
  void stop();

 private:
  struct Http;

  std::unique_ptr<Http> m_http;
};

} // namespace imex::import_service
