#pragma once

#include "import_service/Limits.h"

#include <httplib.h>

#include <string>

namespace imex::import_service {

class PacedStream;

/// The library's server with limits on what a connection may take: its number, its time, its bytes. A request whose
/// framing is unsound, or whose method is none that the library has handlers for, is answered with the status 400
/// before a handler sees it. Handlers see no Content-Type, no ranges, and Content-Length 0 where there is no body.
class BoundedServer : public httplib::Server {
 public:
  /// `busy` is the whole answer to a connection that is one too many.
  BoundedServer(const Limits& limits, std::string busy);

  /// Called while a request is answered, on the same thread, when its body has been read to the end: the connection
  /// may bring another request. Where this is not called, it is closed behind the answer, because what is left of the
  /// body would be taken for a request. Nothing has to be called for a request without a body.
  static void bodyIsRead();

  /// After binding: as many connections may wait to be accepted as may be served. The library lets five wait, and the
  /// next client would try again only after a second.
  void widenQueue();

 private:
  bool process_and_close_socket(socket_t socket) override;

  void serve(socket_t socket);
  bool answerRequest(PacedStream& stream, int requestsLeft);
  void refuse(socket_t socket) const;

  Limits m_limits;
  std::string m_busy;
};

} // namespace imex::import_service
