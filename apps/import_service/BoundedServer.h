#pragma once

#include "import_service/Limits.h"

#include <httplib.h>

#include <string>

namespace imex::import_service {

/// The library's server with limits on what a connection may take: its number, its time, its bytes.
class BoundedServer : public httplib::Server {
 public:
  /// `busy` is the whole answer to a connection that is one too many.
  BoundedServer(const Limits& limits, std::string busy);

  /// Called while a request is answered, on the same thread: its connection is closed behind the answer, because the
  /// rest of its body is not read.
  static void closeAfterAnswer();

  /// After binding: as many connections may wait to be accepted as may be served. The library lets five wait, and the
  /// next client would try again only after a second.
  void widenQueue();

 private:
  bool process_and_close_socket(socket_t socket) override;

  void serve(socket_t socket);
  void refuse(socket_t socket) const;

  Limits m_limits;
  std::string m_busy;
};

} // namespace imex::import_service
