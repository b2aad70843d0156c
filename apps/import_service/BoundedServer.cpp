#include "import_service/BoundedServer.h"

#include "import_service/PacedStream.h"
#include "import_service/Workers.h"

#include <array>
#include <chrono>
#include <cstddef>
#include <string>
#include <utility>

#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace imex::import_service {

namespace {

/// Short, because an idle connection delays the end of the server for as long.
constexpr std::chrono::milliseconds kIdleTime{1'000};

/// A connection serves this many requests, so that those who wait get their turn.
constexpr int kRequestsOfConnection = 100;

thread_local bool isToBeClosed = false;

/// What a connection may still send after its last answer.
constexpr std::size_t kGreatestRest = 1024UL * 1024;

/// Ends a connection so that the client comes to read the answer: closing it while bytes of the client are unread would
/// take the answer back. Waits for the client to close its side, but not for long.
void part(socket_t socket) {
  shutdown(socket, SHUT_WR);
  std::array<char, 4096> bytes{};
  const auto end = std::chrono::steady_clock::now() + kIdleTime;
  for (std::size_t dropped = 0; dropped < kGreatestRest;) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
    pollfd incoming{socket, POLLIN, 0};
    if (left.count() <= 0 || poll(&incoming, 1, static_cast<int>(left.count())) <= 0)
      return;
    const ssize_t size = recv(socket, bytes.data(), bytes.size(), MSG_DONTWAIT);
    if (size <= 0)
      return;
    dropped += static_cast<std::size_t>(size);
  }
}

/// As above without waiting, for the thread that accepts connections.
void dropReceived(socket_t socket) {
  std::array<char, 4096> bytes{};
  for (int i = 0; i < 16 && recv(socket, bytes.data(), bytes.size(), MSG_DONTWAIT) > 0; ++i) {
  }
}

} // namespace

BoundedServer::BoundedServer(const Limits& limits, std::string busy) : m_limits(limits), m_busy(std::move(busy)) {
  new_task_queue = [number = limits.connections] { return new Workers(number); };
  set_payload_max_length(limits.body);
}

void BoundedServer::widenQueue() {
  ::listen(svr_sock_, static_cast<int>(m_limits.connections));
}

void BoundedServer::closeAfterAnswer() {
  isToBeClosed = true;
}

bool BoundedServer::process_and_close_socket(socket_t socket) {
  if (Workers::isRefusing())
    refuse(socket);
  else
    serve(socket);
  shutdown(socket, SHUT_RDWR);
  close(socket);
  return true;
}

void BoundedServer::serve(socket_t socket) {
  PacedStream stream(socket, m_limits);
  bool isClosed = false;
  isToBeClosed = false;
  for (int left = kRequestsOfConnection; left > 0 && !isClosed && !isToBeClosed && !stream.isSpent(); --left) {
    // The first request may take its time, as far as its head may.
    const bool isFirst = left == kRequestsOfConnection;
    if (!stream.awaitRequest(isFirst ? m_limits.patience : kIdleTime) || svr_sock_ == INVALID_SOCKET)
      break;
    stream.beginHead();
    if (!process_request(stream, left == 1, isClosed, [&stream](httplib::Request&) { stream.beginBody(); }))
      break;
  }
  if (isToBeClosed || stream.isSpent())
    part(socket);
}

void BoundedServer::refuse(socket_t socket) const {
  send(socket, m_busy.data(), m_busy.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
  shutdown(socket, SHUT_WR);
  dropReceived(socket);
}

} // namespace imex::import_service
